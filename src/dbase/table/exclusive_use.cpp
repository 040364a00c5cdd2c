// The steps of an exclusive use: recovery first, then rebuilding tags or adding rows.
#include "dbase/table/exclusive_use.h"

#include "dbase/system/error.h"
#include "dbase/system/file_size_limit.h"
#include "dbase/table/table.h"

namespace dbase {

ExclusiveUse::ExclusiveUse(Table& table) : ExclusiveUse(table, Table::Health::Sound) {}

ExclusiveUse::ExclusiveUse(Table& table, Table::Health left)
    : table_(table), lock_(table.structureFile(), table.structureHolders_, LockKind::Exclusive) {
    FileSizeSignal::lookForLimit();
    table.requireInPlace();
    table.renewTornViews(); // others have held the lock since
    table.recoverLocked(left == Table::Health::Sound ? table.health() : left);
}

TableFile& ExclusiveUse::records() { return table_.records_; }

IndexFile* ExclusiveUse::index() { return table_.index_.get(); }

void ExclusiveUse::sync() { table_.recovery().sync(); }

void ExclusiveUse::rebuildTags(const Progress& progress) {
    table_.recovery().beginJournal();
    table_.rebuildLocked(progress);
}

void ExclusiveUse::lockAppend() {
    appending_.emplace(records().file(), appendRange(table_.index_ != nullptr), LockKind::Exclusive);
}

void ExclusiveUse::beginLoad() {
    lockAppend();
    table_.recovery().beginJournal();
}

void ExclusiveUse::shareLoad() {
    if (!records().file().isRemote() &&
        table_.structureFile().tryLock(loadingLock, LockKind::Exclusive)) { // refused while somebody checks
        loading_.emplace(table_.structureFile(), loadingLock, FileLock::alreadyHeld);
        lock_.share();
    }
}

// Nothing if they can only be rebuilt in place: trees that are damaged, or no room for a second set.
std::optional<NewTrees> ExclusiveUse::buildBeside(const ScannedRecords& which, const Progress& progress) {
    try {
        return buildTreesBeside(records(), *table_.index_, which, progress);
    } catch (const Error& error) {
        if (error.code() != ErrorCode::BadIndex && error.code() != ErrorCode::TooLarge &&
            error.code() != ErrorCode::DiskFull) {
            throw;
        }
        return std::nullopt;
    }
}

// The rows were written after the end mark and do not count yet: they are flushed to the disk, then the
// in-update mark is set, then the first row replaces the end mark, and is flushed before anything says that
// it is there. A death or power cut before that leaves no row; after it all of them, because recovery counts
// complete records up to the end mark.
void ExclusiveUse::countIn(std::uint32_t newCount, char firstMark, const std::optional<NewTrees>& trees,
                           const Progress& progress) {
    TableFile& records = table_.records_;
    const UpdateStamp before = table_.index_ ? table_.index_->stamp() : UpdateStamp{};
    if (table_.index_) {
        table_.index_->writeStamp(before.begun(newCount));
    }
    records.file().write(records.offsetOf(records.recordCount() + 1), std::span<const char>(&firstMark, 1));
    records.file().sync();
    records.setCount(newCount);
    if (!trees) {
        table_.rebuildLocked(progress);
        return;
    }
    useTrees(records, *table_.index_, *trees);
    table_.index_->writeStamp(before.ended(newCount));
    table_.verifiedCount_ = newCount;
}

// If space runs out once they count, the rows are taken back and the tags rebuilt as they were.
void ExclusiveUse::addRows(std::uint32_t newCount, char firstMark, const Progress& progress) {
    table_.requireInPlace(); // a load takes its time
    TableFile& records = table_.records_;
    const std::uint32_t countBefore = records.recordCount();
    const bool isShared = lock_.isShared();
    records.file().sync();
    std::optional<NewTrees> trees;
    if (isShared) {
        if (table_.index_) {
            trees = buildBeside({newCount, countBefore + 1, firstMark}, progress);
        }
        try {
            lock_.exclude();
        } catch (...) {
            if (trees) {
                dropTrees(*table_.index_, *trees);
            }
            throw;
        }
    }
    try {
        table_.recovery().beginJournal();
        countIn(newCount, firstMark, trees, progress);
    } catch (...) {
        try {
            records.setCount(countBefore);
            records.cutTail(countBefore);
            table_.rebuildLocked({});
        } catch (...) {
            // The mark stays set and the next program to use the table recovers it; the first error is the
            // one to report.
        }
        throw;
    }
    if (isShared) {
        lock_.share();
    }
}

void ExclusiveUse::withdrawRows(std::uint32_t oldCount) {
    TableFile& records = table_.records_;
    if (lock_.isShared() && records.recordCount() != oldCount) {
        lock_.exclude();
    }
    const bool counted = records.announcedCount() != oldCount;
    if (table_.index_) {
        const UpdateStamp stamp = table_.index_->stamp();
        if (counted || stamp.inUpdate || stamp.records != oldCount) { // the tags may contain the rows already
            table_.index_->writeStamp(stamp.begun(oldCount));
        }
    }
    if (counted) {
        records.setCount(oldCount);
    }
    records.cutTail(oldCount);
}

} // namespace dbase
