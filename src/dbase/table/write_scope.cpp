// Gathers changes of records and tags in memory, and stores them as one.
#include "dbase/table/write_scope.h"

#include <atomic>

#include "dbase/journal/journal.h"
#include "dbase/system/clock.h"
#include "dbase/system/error.h"
#include "dbase/table/table.h"

namespace dbase {

namespace {

using std::chrono::nanoseconds;

/// The time of the scopes of one thread.
struct Turn {
    nanoseconds since{0}; // when others were last let in
    nanoseconds until{0}; // when the last scope ended
};
constinit thread_local Turn turn;

/// Scopes with no longer gaps than this keep others out like a single one.
constexpr std::chrono::milliseconds closely{5};

std::atomic<nanoseconds (*)()> clockOfWriting{coarseNow};
nanoseconds now() { return clockOfWriting.load(std::memory_order_relaxed)(); }

/// Of numbers that no index ever has, and that are never used twice: what a cursor remembers of changes that
/// were dropped is proven by nothing. Even, as while no change is being made.
std::uint64_t nextCounter() {
    static std::atomic<std::uint64_t> last{std::uint64_t{1} << 63};
    return last += 2;
}

} // namespace

void setWriteClock(nanoseconds (*clock)()) { clockOfWriting = clock != nullptr ? clock : coarseNow; }

WriteScope::WriteScope(Table& table, Writing writing)
    : keep_(table.weak_from_this().lock()), table_(table), writing_(writing),
      pending_(table.schema().recordLength) {
    table_.requireWritable();
    if (now() - turn.until > closely) {
        turn.since = now();
    }
    use_.emplace(table_);
    if (gathers()) {
        tags_.emplace(table_.records_, table_.index_.get());
        table_.records_.show(&pending_);
    }
    table_.scope_ = this; // last: a scope that fails half-built must not stay behind
}

WriteScope::~WriteScope() {
    drop();
    table_.scope_ = nullptr;
    unlockRecords();
    use_.reset();
    turn.until = now();
    if (turn.until - turn.since >= longest) {
        letOthersIn(table_.structureFile());
        turn.since = now();
    }
}

void WriteScope::lockAppend() {
    if (locked_.length == 0) {
        const LockWaits waits;
        const LockRange range = appendRange(table_.index_ != nullptr);
        holdLock(table_.records_.file(), range, LockKind::Exclusive);
        locked_ = range;
    }
}

bool WriteScope::tryLockToAppend(RecordNumber number, const void* owner) {
    constexpr LockRange all{recordLock(1).offset, 1 + appendLock.length};
    static_assert(recordLock(1).offset + 1 == appendLock.offset);
    if (number != 1 || locked_.length != 0 || !table_.index_ || !table_.recordLocks_.note(number, owner)) {
        return false;
    }
    try {
        locked_ = table_.records_.file().tryLock(all, LockKind::Exclusive) ? all : LockRange{0, 0};
    } catch (...) {
        table_.recordLocks_.forget(number, owner);
        throw;
    }
    if (locked_.length == 0) {
        table_.recordLocks_.forget(number, owner);
    }
    return locked_.length != 0;
}

void WriteScope::unlockRecords() noexcept {
    if (locked_.offset == recordLock(1).offset && !table_.recordLocks_.forget(1, this)) {
        locked_ = appendLock; // somebody still holds record 1
    }
    table_.recordLocks_.unlockAll(this);
    if (locked_.length != 0) {
        table_.records_.file().unlock(locked_);
    }
}

bool WriteScope::isDue() const {
    return now() - turn.since >= longest || pending_.size() >= largestChange / 2;
}

void WriteScope::drop() noexcept {
    isOpen_ = false;
    counter_ = 0;
    table_.records_.show(nullptr);
    tags_.reset();
}

// What has failed half-way is of no use: pages of one tag may have changed, those of the next not.
template<typename Gather>
void WriteScope::gather(Durability durability, Gather&& change) {
    if (!isOpen_) {
        throw Error(ErrorCode::BadState, table_.path(), "un cambio anterior ha fallado; repita la operación");
    }
    try {
        if (pending_.size() > largestChange - 2 * std::size_t{table_.schema().recordLength}) {
            throw Error(ErrorCode::TooLarge, table_.path(), "demasiados cambios de una vez");
        }
        change();
    } catch (...) {
        drop();
        throw;
    }
    counter_ = nextCounter();
    if (durability == Durability::Disk) {
        durability_ = durability;
    }
}

RecordNumber WriteScope::append(std::span<const char> record, Durability durability) {
    RecordNumber number = 0;
    gather(durability, [&] {
        lockAppend();
        number = table_.records_.recordCount() + 1;
        tags_->add({&table_.schema(), record, number});
        pending_.add(number, record);
    });
    return number;
}

void WriteScope::overwrite(RecordNumber number, std::span<const char> before, std::span<const char> record,
                           Durability durability) {
    gather(durability, [&] {
        tags_->replace({&table_.schema(), before, number}, {&table_.schema(), record, number});
        pending_.change(number, before, record);
    });
}

void WriteScope::commit() {
    if (!isOpen_) {
        throw Error(ErrorCode::BadState, table_.path(), "un cambio anterior ha fallado; repita la operación");
    }
    RecordChange change;
    for (const auto& [number, record] : pending_.changed()) {
        change.add(number, record.before, record.after);
    }
    const std::size_t length = table_.schema().recordLength;
    RecordNumber number = pending_.firstAdded();
    for (std::size_t at = 0; at < pending_.added().size(); at += length) {
        change.add(number++, {}, pending_.added().subspan(at, length));
    }
    table_.records_.show(nullptr); // the count is that of the file again
    isOpen_ = false;
    try {
        if (!change.empty()) {
            table_.store(change, durability_);
            table_.syncUnjournaled(durability_);
        }
    } catch (...) {
        drop();
        throw;
    }
}

} // namespace dbase
