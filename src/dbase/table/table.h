// An open table: records and production index together, shared by all cursors of the process.
//
// A short structure lock surrounds each operation: shared for reading, exclusive for a record plus all its
// tags. The index has an in-update mark and a change counter; a mark still set when the lock is obtained was
// left by a writer that died, and the table is recovered before anything is read. What a change does to
// records is written to a journal first, in case the machine crashes.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "dbase/dbf/table_file.h"
#include "dbase/journal/journal.h"
#include "dbase/lock/locks.h"
#include "dbase/lock/read_hold.h"
#include "dbase/lock/record_locks.h"
#include "dbase/mdx/index_file.h"
#include "dbase/system/durability.h"
#include "dbase/system/progress.h"
#include "dbase/table/recovery.h"
#include "dbase/table/table_names.h"
#include "dbase/table/table_types.h"

namespace dbase {

class ExclusiveUse;
class WriteScope;

class Table : public std::enable_shared_from_this<Table> {
public:
    /// The table of a file, opened by its path without links, once per thread, to which it belongs. Errors:
    /// Error for anything that prevents its use.
    [[nodiscard]] static std::shared_ptr<Table> open(const std::string& path,
                                                     Folders& folders = diskFolders());
    /// A table on files given by the caller; `index` may be null. Without a journal, records torn by a crash
    /// of the machine stay torn.
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

    /// Runs a reading operation while no writer of ours changes the table. The operation may run more than
    /// once: it must start from its own copies and assign results only at its end.
    template<typename Operation>
    auto read(Operation&& operation);
    /// Identifies the time during which a read scope keeps the lock and nothing changes; 0 outside it.
    [[nodiscard]] std::uint64_t holdNumber() const { return hold_ ? hold_->number() : 0; }
    /// Call before using rows from an earlier read; read() calls it itself.
    void giveWay() {
        if (hold_ && scope_ == nullptr) {
            hold_->giveWay();
        }
    }

    /// Increases with every change by one of our programs; read without a lock. Odd while a change is being
    /// made or was left unfinished, 0 in a table without tags. Within a WriteScope other numbers prove what
    /// it has gathered.
    [[nodiscard]] std::uint64_t changeCounter() const;

    // --- Changes, each atomic, or several together in a WriteScope. Errors: Error; the files are then as
    // before.
    RecordNumber append(std::span<const char> record, Durability durability = Durability::Process);
    /// `shown` is what the caller last saw: Error(RecordChanged) if the stored record differs.
    void overwrite(RecordNumber number, std::span<const char> shown, std::span<const char> record,
                   Durability durability = Durability::Process);
    void erase(RecordNumber number, std::span<const char> shown, Durability durability = Durability::Process);

    /// Lets a function change consecutive records, at most `most` from `first` on, under one lock and, unless
    /// there are unique tags, as one change of at most largestChange bytes; skips deleted records and those
    /// held by another owner. Returns the record after them, 0 if there is none.
    RecordNumber amend(RecordNumber first, RecordNumber most, const Amendment& amendment,
                       Durability durability = Durability::Process, const LeftOut& leftOut = {});

    /// Flushes the records changed so far to the disk: a single wait for many changes, instead of
    /// Durability::Disk for each. The tags can be rebuilt from the records. Errors: Error(Io).
    void sync() { records_.file().sync(); }

    /// Rebuilds all tags from the records.
    void rebuildTags(const Progress& progress = {});

    /// Lets others replace the files although this table still has them open.
    void leave();
    /// Error(Replaced) if its names no longer lead to its files, because another program has put others
    /// there.
    void requireInPlace();

    // --- Record locks, held for an owner in this process; owners exclude each other and other programs.
    [[nodiscard]] bool tryLockRecord(RecordNumber number, const void* owner);
    void unlockRecord(RecordNumber number, const void* owner);
    void unlockRecords(const void* owner);

private:
    friend class ExclusiveUse;
    friend class WriteScope;
    enum class Health { Sound, DiedInUpdate, Miscounted, Stale, Stopped, Restored };

    // table_registry.cpp
    [[nodiscard]] static std::shared_ptr<Table> tryOpen(const std::string& path, Folders& folders);

    // table.cpp
    [[noreturn]] void refuseReplaced() const;
    void requireWritable() const;
    void refuseWriting(const std::string& reason);
    void guardRead(const std::function<void()>& operation);
    [[nodiscard]] bool tryReadLocked(const std::function<void()>& operation);
    void runWhole(const std::function<void()>& operation) const;
    [[nodiscard]] bool isTorn() const;
    void renewTornViews();
    [[nodiscard]] File& structureFile() const { return index_ ? index_->file() : records_.file(); }

    // table_changes.cpp
    void requireWhole(std::span<const char> record) const;
    void sendFirst();
    template<typename Write, typename Undo>
    void apply(const RecordChange& change, Durability durability, std::uint32_t count, Write&& write,
               Undo&& undo);
    void store(const RecordChange& change, Durability durability);
    [[nodiscard]] std::vector<char> requireShown(RecordNumber number, std::span<const char> shown) const;
    [[nodiscard]] bool changesOneByOne() const;
    struct Pass;
    void amendLocked(RecordNumber first, RecordNumber last, const Pass& pass);

    // table_health.cpp
    [[nodiscard]] Health health();
    [[nodiscard]] bool entriesMatchRecords() const;
    [[nodiscard]] const Column& keyColumn() const;
    [[noreturn]] void refuseStale(Health found) const;
    void recover();
    void recoverLocked(Health found);
    void rebuildLocked(const Progress& progress);
    [[nodiscard]] Recovery recovery();
    [[nodiscard]] bool findsJournal();
    void joinSession();
    void recoverSession();
    void cutTreesOfInterruptedLoad();
    void endJournal(Recovery& steps);
    void leaveSession();
    void writeJournal(const RecordChange& change, std::uint64_t counter, Durability durability);
    void syncUnjournaled(Durability durability);

    TableFile records_;
    std::unique_ptr<IndexFile> index_;
    std::optional<Journal> journal_;
    std::string readOnlyReason_;
    std::optional<std::uint32_t> verifiedCount_; // number of records that matched a tag's entries
    bool isCounted_ = false;                     // the header's count has been compared with the file
    bool hasTail_ = false; // the count was wrong, and part of a record may follow the last one
    StructureLock::Holders structureHolders_;
    RecordLocks recordLocks_{records_.file()};
    std::optional<TableNames> names_; // absent for files that the caller gave
    std::optional<ReadHold> hold_;    // present since the first read
    WriteScope* scope_ = nullptr;     // the one now at work
};

template<typename Operation>
auto Table::read(Operation&& operation) {
    std::optional<decltype(operation())> result;
    guardRead([&] { result.emplace(operation()); });
    return *std::move(result);
}

} // namespace dbase
