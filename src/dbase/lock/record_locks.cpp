// Record locks: each has an owner in this process, and a lock on the file against other programs.
#include "dbase/lock/record_locks.h"

#include <algorithm>

#include "dbase/lock/locks.h"

namespace dbase {

bool RecordLocks::tryLock(RecordNumber number, const void* owner) {
    const auto [held, isNew] = owners_.emplace(number, owner); // first: if it throws, no lock is left
    if (!isNew) {
        return held->second == owner;
    }
    bool isOurs = false;
    try {
        isOurs = file_.tryLock(recordLock(number), LockKind::Exclusive);
    } catch (...) {
        owners_.erase(held);
        throw;
    }
    if (!isOurs) {
        owners_.erase(held);
    }
    return isOurs;
}

void RecordLocks::unlock(RecordNumber number, const void* owner) {
    if (const auto held = owners_.find(number); held != owners_.end() && held->second == owner) {
        file_.unlock(recordLock(number));
        owners_.erase(held);
    }
}

void RecordLocks::unlockAll(const void* owner) {
    std::erase_if(owners_, [&](const auto& held) {
        if (held.second != owner) {
            return false;
        }
        file_.unlock(recordLock(held.first));
        return true;
    });
}

bool RecordLocks::forget(RecordNumber number, const void* owner) {
    const auto held = owners_.find(number);
    if (held == owners_.end() || held->second != owner) {
        return false;
    }
    owners_.erase(held);
    return true;
}

bool RecordLocks::pass(RecordNumber number, const void* from, const void* to) {
    const auto held = owners_.find(number);
    if (held == owners_.end() || held->second != from) {
        return false;
    }
    held->second = to;
    return true;
}

bool RecordLocks::isAnyHeld(RecordNumber first, RecordNumber last) const {
    return std::any_of(owners_.begin(), owners_.end(),
                       [&](const auto& held) { return first <= held.first && held.first <= last; });
}

} // namespace dbase
