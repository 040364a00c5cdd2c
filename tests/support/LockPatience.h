// How long a test lets the engine wait for a lock.
#pragma once

#include <chrono>

#include "dbase/lock/locks.h"

namespace ambrel::test {

/// Sets another patience and restores the previous one when destroyed.
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
