// Several changes of one table under a single hold of its locks.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>

#include "dbase/dbf/pending_records.h"
#include "dbase/lock/locks.h"
#include "dbase/system/durability.h"
#include "dbase/table/exclusive_use.h"
#include "dbase/table/tag_changes.h"

namespace dbase {

/// During its lifetime no other program reads or changes the table. Every cursor of this thread on the table
/// goes on as ever, except that loads, amendments and rebuilds of tags are refused. Scopes do not nest. Only
/// for changes in close succession, never around a message or an event loop.
class WriteScope {
public:
    /// When the changes made meanwhile are written.
    enum class Writing {
        AtOnce,   // each by itself, as without a scope
        Together, // by commit(), as one change; until then they are in memory, and cursors of this thread see
                  // them
    };
    /// How long scopes that follow one another closely may keep others waiting.
    static constexpr std::chrono::milliseconds longest{40};

    /// Errors: those of a change, before anything is changed.
    WriteScope(Table& table, Writing writing);
    /// Drops what commit() has not stored. Lets others in if they have waited long enough.
    ~WriteScope();
    WriteScope(const WriteScope&) = delete;
    WriteScope& operator=(const WriteScope&) = delete;

    /// Whether others have waited long enough, or memory holds enough: then commit and end the scope.
    [[nodiscard]] bool isDue() const;
    /// Stores the gathered changes, all or none, and waits for the disk if one of them asked for it. Nothing
    /// can be changed in the scope afterwards. Errors: those of a change. After a change that has failed,
    /// except by RecordChanged, Error(BadState): the scope has nothing to store any more.
    void commit();

private:
    friend class Table;

    [[nodiscard]] bool gathers() const { return writing_ == Writing::Together; }
    /// Proves what cursors remember while the scope has changes in memory; 0 as long as it has none.
    [[nodiscard]] std::uint64_t counter() const { return counter_; }
    [[nodiscard]] bool hasChanged(RecordNumber number) const {
        return isOpen_ && pending_.changed().contains(number);
    }
    RecordNumber append(std::span<const char> record, Durability durability);
    void overwrite(RecordNumber number, std::span<const char> before, std::span<const char> record,
                   Durability durability);

    template<typename Gather>
    void gather(Durability durability, Gather&& change);
    void drop() noexcept;

    /// Takes header and append until the scope's end. Errors: Error(LockTimeout).
    void lockAppend();
    /// Tries to take the lock of record 1 for an owner, together with header and append, beside which it
    /// lies: a single call for a program that locks the first row to give a new one its key. False, with
    /// nothing taken, for any other record.
    [[nodiscard]] bool tryLockToAppend(RecordNumber number, const void* owner);
    /// Whether the lock of a record stays until the scope's end when its owner releases it.
    [[nodiscard]] bool keepsLock(RecordNumber number) const {
        return hasChanged(number) || (number == 1 && locked_.offset == recordLock(1).offset);
    }
    void unlockRecords() noexcept;

    std::shared_ptr<Table> keep_; // a listener may close the last cursor on it
    Table& table_;
    const Writing writing_;
    std::optional<ExclusiveUse> use_;
    LockRange locked_{0, 0};         // of the additions; empty before the first one
    std::optional<TagChanges> tags_; // after the lock, because its end drops what the index has gathered
    PendingRecords pending_;
    Durability durability_ = Durability::Process;
    std::uint64_t counter_ = 0;
    bool isOpen_ = true; // for further changes
};

/// The clock of the scopes; null for the system's.
void setWriteClock(std::chrono::nanoseconds (*clock)());

} // namespace dbase
