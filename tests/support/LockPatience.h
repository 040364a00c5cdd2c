// How long a test lets the engine wait for a lock.
#pragma once

#include <chrono>

#include "dbase/lock/locks.h"

namespace ambrel::test {

/// Another patience while it lives, and the one before afterwards.
class LockPatience {
public:
    explicit LockPatience(std::chrono::milliseconds patience) { dbase::setLockPatience(patience); }
    ~LockPatience() { dbase::setLockPatience(before_); }
    LockPatience(const LockPatience&) = delete;
    LockPatience& operator=(const LockPatience&) = delete;

private:
    std::chrono::milliseconds before_ = dbase::lockPatience();
};

} // namespace ambrel::test
