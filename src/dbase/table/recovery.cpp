// The steps of a recovery: redoing the journal, counting records, cutting the tail.
#include "dbase/table/recovery.h"

#include <algorithm>

#include "dbase/journal/journal_redo.h"
#include "dbase/lock/locks.h"
#include "dbase/mdx/index_layout.h"
#include "dbase/system/lasting_inode.h"
#include "dbase/system/notify.h"

namespace dbase {

namespace {

// The first record of a table that another engine has packed may have the end mark in place of its own; a
// journal of an earlier version does not say how many records were there, and so could take it for a hole.
RecordNumber packedRecords(const TableFile& records) {
    return records.recordCount() > 0 && records.record(1).bytes.front() == endMark ? 1 : 0;
}

} // namespace

/// Takes the append lock unless another program holds it: one that is adding a row will count it itself.
struct Recovery::AppendLock {
    AppendLock(File& records, bool hasIndex)
        : file(records), range(appendRange(hasIndex)), isHeld(file.tryLock(range, LockKind::Exclusive)) {}
    ~AppendLock() {
        if (isHeld) {
            file.unlock(range);
        }
    }
    AppendLock(const AppendLock&) = delete;
    AppendLock& operator=(const AppendLock&) = delete;

    File& file;
    const LockRange range;
    const bool isHeld;
};

UpdateStamp stampOf(const File* index) {
    StampBytes bytes{};
    if (index != nullptr && index->size() >= mdx::headBytes) {
        if (const char* view = index->view()) { // without a system call, because every change asks
            std::copy_n(view + mdx::stamp, bytes.size(), bytes.begin());
        } else {
            index->read(mdx::stamp, bytes);
        }
    }
    return decodeStamp(bytes);
}

std::optional<std::uint64_t> sessionOf(const File* index) {
    return index != nullptr ? std::optional(stampOf(index).session) : std::nullopt;
}

const Column& identifyingColumn(const Schema& schema, const std::vector<Expression>& keys) {
    const auto found =
        std::ranges::find_if(keys, [](const Expression& key) { return !key.segments().empty(); });
    return schema.columns[found == keys.end() ? 0 : found->segments().front().column];
}

JournalOrigin originOf(const TableFile& records) {
    return {lastingInode(records.file()), records.recordCount()};
}

// The journal's session is on the disk in both files before the first entry. An index that has lost it was
// exchanged, or another program has written its header: then the entries so far may be of other records.
void Recovery::beginJournal() {
    if (journal_ == nullptr) {
        return;
    }
    if (!journal_->isJoined()) {
        holdLock(records_.file(), writingLock, LockKind::Shared); // until the table is left
    }
    const bool hasJoined = journal_->join();
    UpdateStamp stamp = stampOf(index_);
    if (hasJoined && (index_ == nullptr || stamp.session == journal_->session())) {
        return;
    }
    records_.file().sync(); // these files may not have been flushed to the disk yet
    journal_->begin(originOf(records_));
    if (index_ != nullptr && index_->size() >= mdx::headBytes) {
        stamp.inUpdate = stamp.inUpdate || !stamp.present;
        stamp.present = true;
        stamp.session = journal_->session();
        index_->write(mdx::stamp, encodeStamp(stamp));
        index_->sync();
    }
}

void Recovery::sync() {
    records_.file().sync();
    if (index_ != nullptr) {
        index_->sync();
    }
}

// Forgets what was known of the records before the lock.
void Recovery::forgetViews() {
    records_.forgetSize();
    if (records_.file().viewIsTorn()) {
        records_.file().renewView();
    }
}

// Counts all complete records, even those not yet in the header's count.
bool Recovery::count() {
    records_.forgetSize();
    return records_.recount();
}

bool Recovery::hasOthersJournal() const {
    return journal_ != nullptr && journal_->isOfOtherFiles(originOf(records_), sessionOf(index_));
}

void Recovery::afterStop(const Column& key) {
    const FileLock appending(records_.file(), appendRange(index_ != nullptr), LockKind::Exclusive);
    forgetViews();
    const std::optional<RecordNumber> begun = journal_->recordsAtBegin();
    const NotRedone rest = redo(records_, journal_->keptEntries(), begun.value_or(UINT32_MAX));
    static_cast<void>(count());
    records_.settleEnd(records_.recordCount());
    fillHoles(records_, begun.value_or(packedRecords(records_)));
    std::vector<std::vector<char>> missing = rowsMissingFrom(records_, rest.displaced, key);
    if (rest.isChanged || missing.size() < rest.displaced.size()) {
        whySetAside_ =
            "otros programas han cambiado registros guardados antes de pararse el equipo, y así se quedan";
    }
    addDisplaced(std::move(missing));
    records_.file().sync();
}

// Written to the journal first, so that a stop of the machine in here adds none of them twice.
void Recovery::addDisplaced(std::vector<std::vector<char>> rows) {
    if (rows.empty()) {
        return;
    }
    records_.file().sync(); // or rows after the end, which were cut off, could come back in their place
    const RecordNumber first = records_.recordCount() + 1;
    RecordRun run{first, static_cast<RecordNumber>(rows.size()), {}, {}};
    for (const std::vector<char>& row : rows) {
        run.after.insert(run.after.end(), row.begin(), row.end());
    }
    const std::vector<char> bytes = run.after;
    journal_->add({0, {std::move(run)}}, true);
    records_.writeTail(first, bytes);
    records_.setCount(first - 1 + static_cast<RecordNumber>(rows.size()));
}

bool Recovery::afterRestore() {
    forgetViews();
    whySetAside_ =
        "se ha recuperado una copia, y el diario que había quedado es de otros ficheros: no se aplica";
    const AppendLock appending(records_.file(), index_ != nullptr);
    return appending.isHeld && count();
}

void Recovery::endJournal() {
    if (whySetAside_.empty()) {
        journal_->remove();
        return;
    }
    const std::string path = journal_->setAside();
    notify(records_.path() + ": " + whySetAside_ + "; el diario se guarda como " + path +
           " y \"ambcp comprobar\" dice qué filas suyas no están en la tabla");
    whySetAside_.clear();
}

// A wrong count without a mark may come from a file that is still being copied: then only the count is
// written, so that the copy still ends up correct, and the tail stays until the table is left.
bool Recovery::afterDeath(const UpdateStamp& left) {
    beginJournal();
    forgetViews();
    const AppendLock appending(records_.file(), index_ != nullptr);
    if (journal_ != nullptr) {
        redoUnfinished(records_, *journal_, left, appending.isHeld ? NewRows::Redo : NewRows::Leave);
    }
    if (!appending.isHeld) {
        return false;
    }
    const bool wasMiscounted = count();
    if (left.inUpdate) {
        records_.settleEnd(records_.recordCount());
    }
    return wasMiscounted && !left.inUpdate;
}

void Recovery::tail() {
    if (const AppendLock appending(records_.file(), index_ != nullptr); appending.isHeld) {
        records_.forgetSize();
        records_.cutTail(records_.recordCount());
    }
}

} // namespace dbase
