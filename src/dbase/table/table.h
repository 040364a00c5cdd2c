// An open table: records and production index together, shared by all cursors of the process.
//
// A short structure lock surrounds each operation: shared for reading, exclusive for a record plus all its
// tags. The index carries an in-update mark and a change counter; a mark that stands although the lock could
// be had was left by a writer that died, and the table is recovered before anything is answered. What a
// change does to records is written to a journal first, for the case that the machine stops.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>

#include "dbase/dbf/table_file.h"
#include "dbase/journal/journal.h"
#include "dbase/lock/locks.h"
#include "dbase/lock/read_hold.h"
#include "dbase/lock/record_locks.h"
#include "dbase/mdx/index_file.h"
#include "dbase/system/durability.h"
#include "dbase/system/progress.h"
#include "dbase/table/recovery.h"
#include "dbase/table/table_types.h"

namespace dbase {

class ExclusiveUse;

class Table {
public:
    /// The table of a file, opened once a process. Errors: Error for everything that keeps it from being
    /// used.
    [[nodiscard]] static std::shared_ptr<Table> open(const std::string& path);
    /// A table on files given by the caller; `index` may be null. Without a journal what a stop of the
    /// machine tears stays torn.
    Table(std::unique_ptr<File> records, std::unique_ptr<File> index, std::string readOnlyReason = {},
          std::unique_ptr<JournalPlace> journal = nullptr);
    ~Table();
    Table(const Table&) = delete;
    Table& operator=(const Table&) = delete;

    [[nodiscard]] const std::string& path() const { return records_.path(); }
    [[nodiscard]] const Schema& schema() const { return records_.schema(); }
    [[nodiscard]] bool isReadOnly() const { return !readOnlyReason_.empty(); }
    /// Spanish, UTF-8.
    [[nodiscard]] const std::string& readOnlyReason() const { return readOnlyReason_; }
    [[nodiscard]] const Tag* findTag(std::string_view name) const {
        return index_ ? index_->findTag(name) : nullptr;
    }
    [[nodiscard]] std::vector<std::string> tagNames() const;
    [[nodiscard]] const IndexFile* index() const { return index_.get(); }
    [[nodiscard]] const TableFile& records() const { return records_; }

    /// Runs a reading operation on a state of the table that no writer of ours changes meanwhile. The
    /// operation may run more than once: it must start from its own copies and only assign results at its
    /// end.
    template<typename Operation>
    auto read(Operation&& operation);
    /// Where a read scope keeps the lock: the number of that time, in which nothing changes; else 0.
    [[nodiscard]] std::uint64_t holdNumber() const { return hold_ ? hold_->number() : 0; }
    /// Comes before rows are used that an earlier read brought; read() does so itself.
    void giveWay() {
        if (hold_) {
            hold_->giveWay();
        }
    }

    /// Moves at every change that one of our programs makes, read without a lock; odd while a change is being
    /// made or was left unfinished. 0 in a table without tags.
    [[nodiscard]] std::uint64_t changeCounter() const;

    // --- Changes; each is whole or not there. Errors: Error, the files then are as before.
    RecordNumber append(std::span<const char> record, Durability durability = Durability::Process);
    /// `shown` is what the caller last saw: Error(RecordChanged) when the stored record is another one.
    void overwrite(RecordNumber number, std::span<const char> shown, std::span<const char> record,
                   Durability durability = Durability::Process);
    void erase(RecordNumber number, std::span<const char> shown, Durability durability = Durability::Process);

    /// Lets a function change neighbouring records, at most `most` from `first` on, under one lock and, save
    /// where there are unique tags, as one change of at most largestChange bytes; deleted records and those
    /// that somebody holds are left out. Returns the record behind them, 0 when there is none.
    RecordNumber amend(RecordNumber first, RecordNumber most, const Amendment& amendment,
                       Durability durability = Durability::Process, const LeftOut& leftOut = {});

    /// Puts the records changed so far on the disk: one wait for many changes, where each alone would need
    /// Durability::Disk. The tags can be rebuilt from the records. Errors: Error(Io).
    void sync() { records_.file().sync(); }

    /// Rebuilds all tags from the records.
    void rebuildTags(const Progress& progress = {});

    /// Lets others replace the files although this table has them open still.
    void leave();

    // --- Record locks, held for an owner of this process; owners exclude each other and other programs.
    [[nodiscard]] bool tryLockRecord(RecordNumber number, const void* owner);
    void unlockRecord(RecordNumber number, const void* owner) { recordLocks_.unlock(number, owner); }
    void unlockRecords(const void* owner) { recordLocks_.unlockAll(owner); }

private:
    friend class ExclusiveUse;
    enum class Health { Sound, DiedInUpdate, Miscounted, Stale, Stopped };

    // table.cpp
    void requireWritable() const;
    void guardRead(const std::function<void()>& operation);
    [[nodiscard]] bool tryReadLocked(const std::function<void()>& operation);
    [[nodiscard]] bool isTorn() const;
    void renewTornViews();
    [[nodiscard]] File& structureFile() const { return index_ ? index_->file() : records_.file(); }

    // table_changes.cpp
    void requireWhole(std::span<const char> record) const;
    void sendFirst();
    template<typename Write, typename Undo>
    void apply(const RecordChange& change, Durability durability, std::uint32_t count, Write&& write,
               Undo&& undo);
    [[nodiscard]] bool changesOneByOne() const;
    struct Pass;
    void amendLocked(RecordNumber first, RecordNumber last, const Pass& pass);

    // table_health.cpp
    [[nodiscard]] Health health();
    [[nodiscard]] bool entriesMatchRecords() const;
    [[noreturn]] void refuseStale(Health found) const;
    void recover();
    void recoverLocked(Health found);
    void rebuildLocked(const Progress& progress);
    [[nodiscard]] Recovery recovery();
    void joinSession();
    void leaveSession();
    void writeJournal(const RecordChange& change, std::uint64_t counter, Durability durability);
    void syncUnjournaled(Durability durability);

    TableFile records_;
    std::unique_ptr<IndexFile> index_;
    std::optional<Journal> journal_;
    std::string readOnlyReason_;
    std::optional<std::uint32_t> verifiedCount_; // records for which the entries of a tag were counted
    bool isCounted_ = false;                     // the header's count was compared with the file once
    bool hasTail_ = false; // the count was wrong, and part of a record may lie after the last one
    StructureLock::Holders structureHolders_;
    RecordLocks recordLocks_{records_.file()};
    std::optional<ReadHold> hold_; // since the first read
};

template<typename Operation>
auto Table::read(Operation&& operation) {
    std::optional<decltype(operation())> result;
    guardRead([&] { result.emplace(operation()); });
    return *std::move(result);
}

} // namespace dbase
