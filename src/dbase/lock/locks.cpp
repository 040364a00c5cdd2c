// Waits for locks, and shares a structure lock among the cursors of one process.
#include "dbase/lock/locks.h"

#include <algorithm>
#include <atomic>
#include <thread>

#include "dbase/lock/read_scope.h"
#include "dbase/system/error.h"

namespace dbase {

namespace {

using std::chrono::nanoseconds;

std::chrono::milliseconds patience{10000};

/// What an operation of this thread has waited. Only waiting counts, so that a long one that is never kept
/// waiting for long does not fail.
struct Waits {
    unsigned open = 0;
    nanoseconds waited{0};
};
constinit thread_local Waits waits;

nanoseconds steadyNow() { return std::chrono::steady_clock::now().time_since_epoch(); }
std::atomic<nanoseconds (*)()> clockOfWaits{steadyNow};

/// Shows for the duration of a block that a writer is waiting for the structure lock.
class WaitingWriter {
public:
    WaitingWriter(File& file, LockRange range, LockKind kind)
        : file_(file),
          says_(kind == LockKind::Exclusive && range.offset == structureLock.offset &&
                range.length == structureLock.length && file.tryLock(waitingLock, LockKind::Shared)) {}
    ~WaitingWriter() {
        if (says_) {
            file_.unlock(waitingLock);
        }
    }
    WaitingWriter(const WaitingWriter&) = delete;
    WaitingWriter& operator=(const WaitingWriter&) = delete;

private:
    File& file_;
    bool says_;
};

} // namespace

std::chrono::milliseconds lockPatience() { return patience; }
void setLockPatience(std::chrono::milliseconds value) { patience = value; }

void setLockClock(nanoseconds (*clock)()) { clockOfWaits = clock != nullptr ? clock : steadyNow; }

LockWaits::LockWaits() {
    if (waits.open++ == 0) {
        waits.waited = nanoseconds{0};
    }
}

LockWaits::~LockWaits() { --waits.open; }

void holdLock(File& file, LockRange range, LockKind kind) {
    if (file.tryLock(range, kind)) {
        return;
    }
    const LockWaits alone; // unless it is part of an operation
    ReadScope::letGo(); // others may be waiting for these, and so may we, through another opening of the file
    const WaitingWriter waiting(file, range, kind);
    const auto now = clockOfWaits.load(std::memory_order_relaxed);
    const nanoseconds begin = now(), before = waits.waited;
    auto pause = std::chrono::microseconds(20);
    while (!file.tryLock(range, kind)) {
        waits.waited = before + (now() - begin);
        if (waits.waited >= patience) {
            throw Error(ErrorCode::LockTimeout, file.path(),
                        "otro programa mantiene bloqueada la tabla; espere y repita la operación");
        }
        std::this_thread::sleep_for(pause);
        pause = std::min(pause * 2, std::chrono::microseconds(2000));
    }
}

StructureLock::StructureLock(File& file, Holders& holders, LockKind kind)
    : file_(file), holders_(holders), kind_(kind) {
    if (kind == LockKind::Exclusive) {
        ReadScope::letGo();
    }
    if (holders_.isChanging || (holders_.readers > 0 && kind == LockKind::Exclusive)) {
        throw Error(ErrorCode::LockTimeout, file.path(),
                    "la tabla se está usando en este mismo momento; espere a que termine la operación");
    }
    if (holders_.readers == 0) {
        holdLock(file, structureLock, kind);
        if (holders_.exchanged != nullptr) {
            try {
                holdLock(*holders_.exchanged, exchangeLock, LockKind::Shared);
            } catch (...) {
                file.unlock(holders_.release);
                throw;
            }
        }
    }
    if (kind == LockKind::Exclusive) {
        holders_.isChanging = true;
    } else {
        ++holders_.readers;
    }
}

StructureLock::~StructureLock() {
    if (kind_ == LockKind::Exclusive) {
        holders_.isChanging = false;
    } else {
        --holders_.readers;
    }
    if (holders_.readers == 0) {
        if (holders_.exchanged != nullptr) {
            holders_.exchanged->unlock(exchangeLock);
        }
        file_.unlock(holders_.release);
    }
}

} // namespace dbase
