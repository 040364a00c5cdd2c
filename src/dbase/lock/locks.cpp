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

/// Shows that somebody is waiting for the structure lock: a writer not while a load keeps it, which no reader
/// can shorten.
class Waiting {
public:
    Waiting(File& file, LockRange range, LockKind kind)
        : file_(file), isWriter_(kind == LockKind::Exclusive),
          isOne_(range.offset == structureLock.offset && range.length == structureLock.length) {}
    ~Waiting() { show(false); }
    Waiting(const Waiting&) = delete;
    Waiting& operator=(const Waiting&) = delete;

    void update() {
        if (isOne_) {
            show(!isWriter_ || !file_.isLockedByOthers(loadingLock));
        }
    }

private:
    void show(bool isWaiting) {
        const LockRange shown = isWriter_ ? waitingLock : waitingReaderLock;
        if (isWaiting && !isShown_) {
            isShown_ = file_.tryLock(shown, LockKind::Shared);
        } else if (!isWaiting && isShown_) {
            file_.unlock(shown);
            isShown_ = false;
        }
    }

    File& file_;
    bool isWriter_, isOne_, isShown_ = false;
};

/// Gives a chance to programs that do not show that they wait.
constexpr std::chrono::microseconds moment{500};
constexpr std::chrono::milliseconds longestTurn{20};

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
    Waiting waiting(file, range, kind);
    waiting.update();
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
        waiting.update();
        pause = std::min(pause * 2, std::chrono::microseconds(2000));
    }
}

// Somebody waiting in vain, because another program holds the lock for long, does not keep us longer.
void letOthersIn(const File& file) {
    using Clock = std::chrono::steady_clock;
    std::this_thread::sleep_for(moment);
    const Clock::time_point latest = Clock::now() + longestTurn;
    while ((file.isLockedByOthers(waitingLock) || file.isLockedByOthers(waitingReaderLock)) &&
           Clock::now() < latest) {
        std::this_thread::sleep_for(moment);
    }
}

StructureLock::StructureLock(File& file, Holders& holders, LockKind kind)
    : file_(file), holders_(holders), kind_(kind) {
    if (kind == LockKind::Exclusive) {
        ReadScope::letGo();
    }
    requireFree(kind, 0);
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

void StructureLock::requireFree(LockKind kind, unsigned ownReads) const {
    if (holders_.isChanging || (holders_.readers > ownReads && kind == LockKind::Exclusive)) {
        throw Error(ErrorCode::LockTimeout, file_.path(),
                    "la tabla se está usando en este mismo momento; espere a que termine la operación");
    }
}

void StructureLock::share() {
    static_cast<void>(file_.tryLock(structureLock, LockKind::Shared)); // cannot fail: it is ours
    kind_ = LockKind::Shared;
    holders_.isChanging = false;
    ++holders_.readers;
}

void StructureLock::exclude() {
    ReadScope::letGo();
    requireFree(LockKind::Exclusive, 1);
    holdLock(file_, structureLock, LockKind::Exclusive);
    kind_ = LockKind::Exclusive;
    holders_.isChanging = true;
    --holders_.readers;
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
