// Read scopes: the locks that a thread keeps from one read to the next, and when it releases them.
#include "dbase/lock/read_scope.h"

#include <atomic>
#include <thread>
#include <vector>

#include "dbase/lock/read_hold.h"
#include "dbase/system/clock.h"

namespace dbase {

namespace {

using std::chrono::nanoseconds;

/// The shared state of the scopes of one thread.
struct Scopes {
    unsigned open = 0;
    ReadHold* kept = nullptr;
    std::uint64_t number = 0; // of the latest hold
    nanoseconds since{0};     // when writers were last let in
    nanoseconds until{0};     // when the last scope ended
};
constinit thread_local Scopes scopes;

/// Scopes with no longer gaps than this keep writers out like a single one.
constexpr std::chrono::milliseconds closely{5};
/// Gives a chance to programs that do not announce that they wait.
constexpr std::chrono::microseconds moment{500};

std::atomic<nanoseconds (*)()> clockOfHolds{coarseNow};

nanoseconds now() { return clockOfHolds.load(std::memory_order_relaxed)(); }

} // namespace

void setHoldClock(nanoseconds (*clock)()) { clockOfHolds = clock != nullptr ? clock : coarseNow; }

ReadScope::ReadScope() {
    if (scopes.open++ == 0 && now() - scopes.until > closely) {
        scopes.since = now();
    }
}

ReadScope::~ReadScope() {
    if (--scopes.open == 0) {
        letGo();
        scopes.until = now();
    }
}

void ReadScope::letGo() {
    while (scopes.kept != nullptr) {
        scopes.kept->letGo();
    }
}

void ReadHold::keep() {
    letGo();
    if (scopes.open == 0) {
        return;
    }
    lock_.emplace(file_, holders_, LockKind::Shared);
    number_ = ++scopes.number;
    next_ = scopes.kept;
    scopes.kept = this;
}

void ReadHold::letGo() {
    if (number_ == 0) {
        return;
    }
    number_ = 0;
    lock_.reset();
    ReadHold** link = &scopes.kept;
    while (*link != nullptr && *link != this) {
        link = &(*link)->next_;
    }
    if (*link == this) {
        *link = next_;
    }
}

// A writer waiting in vain, because another program keeps the lock for long, does not stop us for ever.
void ReadHold::letWritersIn() {
    const nanoseconds latest = now() + longestPause;
    while (file_.isLockedByOthers(waitingLock) && now() < latest) {
        std::this_thread::sleep_for(moment);
    }
}

void ReadHold::giveWay() {
    if (scopes.open == 0) {
        giveWayUnscoped();
    } else if (now() - scopes.since >= longestHold) {
        giveWayInScope();
    }
}

// Short locks without a pause between them keep a writer out as well: of many readers, one is always inside.
void ReadHold::giveWayUnscoped() {
    if (now() - looked_ >= longestRun && holders_.readers == 0 && !holders_.isChanging) {
        letWritersIn();
        looked_ = now();
    }
}

void ReadHold::giveWayInScope() {
    if (holders_.readers > (number_ != 0 ? 1U : 0U)) { // inside another read, which keeps its lock anyway
        return;
    }
    std::vector<ReadHold*> freed{this};
    for (ReadHold* hold = scopes.kept; hold != nullptr; hold = hold->next_) {
        if (hold != this) {
            freed.push_back(hold);
        }
    }
    ReadScope::letGo();
    std::this_thread::sleep_for(moment);
    for (ReadHold* hold : freed) {
        hold->letWritersIn();
    }
    scopes.since = now();
}

} // namespace dbase
