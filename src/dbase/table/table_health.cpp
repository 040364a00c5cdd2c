// Making a table whole that a program, or the machine, left in the middle of something.

#include <algorithm>

#include "dbase/journal/journal_redo.h"
#include "dbase/mdx/index_rebuild.h"
#include "dbase/mdx/tree_cursor.h"
#include "dbase/table/table.h"

namespace dbase {

bool Table::entriesMatchRecords() const {
    const auto tag = std::find_if(index_->tags().begin(), index_->tags().end(),
                                  [](const Tag& candidate) { return candidate.holdsAllRecords(); });
    if (tag == index_->tags().end()) {
        return !index_->stamp().present; // nothing that could be counted cheaply: only our own mark speaks
    }
    std::uint64_t entries = 0;
    TreeCursor cursor(*index_, *tag);
    for (bool on = cursor.first(); on; on = cursor.nextLeaf()) {
        entries += cursor.entriesLeftInLeaf();
    }
    return entries == records_.recordCount();
}

Table::Health Table::health() {
    const UpdateStamp stamp = index_ ? index_->stamp() : UpdateStamp{};
    if (stamp.present && stamp.inUpdate) {
        return Health::DiedInUpdate;
    }
    if (!isCounted_ && records_.isMiscounted()) {
        return Health::Miscounted;
    }
    isCounted_ = true;
    if (!index_) {
        return Health::Sound;
    }
    const RecordNumber count = records_.recordCount();
    if ((stamp.present && stamp.records == count) || verifiedCount_ == count) {
        return Health::Sound;
    }
    // Another program added records. It may have kept the tags up to date; counting the entries of one tag
    // tells.
    bool matches = false;
    try {
        matches = entriesMatchRecords();
    } catch (const Error& error) {
        if (error.code() != ErrorCode::BadIndex) {
            throw;
        }
    }
    if (!matches) {
        return Health::Stale;
    }
    verifiedCount_ = count;
    return Health::Sound;
}

void Table::refuseStale(Health found) const {
    const std::string what =
        found == Health::DiedInUpdate ? "un programa terminó mientras escribía y el índice quedó a medias"
        : found == Health::Miscounted ? "la tabla no tiene los registros que dice su cabecera"
                                      : "el índice no corresponde a los registros";
    throw Error(ErrorCode::StaleIndex, index_ ? index_->path() : path(),
                what + "; no se puede rehacer porque la tabla es de sólo lectura (" + readOnlyReason_ +
                    "). Ejecute \"ambcp reindexar\" con permiso de escritura");
}

void Table::recover() {
    const StructureLock lock(structureFile(), structureHolders_, LockKind::Exclusive);
    renewTornViews(); // others had the lock since
    mend(health());
}

void Table::mend(Health found) {
    if (found == Health::Sound) {
        return; // somebody else was faster
    }
    if (isReadOnly()) {
        refuseStale(found);
    }
    if (found == Health::Stale && records_.announcedCount() > records_.recordCount()) {
        // Cut while it is open: somebody may be copying another one over it. Whoever opens it anew goes on
        // with the records that are there then.
        throw Error(ErrorCode::BadTable, path(),
                    "otro programa ha cortado la tabla: dice tener " +
                        std::to_string(records_.announcedCount()) + " registros y quedan " +
                        std::to_string(records_.recordCount()) +
                        "; ciérrela, recupere una copia si la tiene y vuelva a abrirla");
    }
    beginJournal();
    if (found == Health::DiedInUpdate && journal_) { // its record may be half there
        redoUnfinished(records_, *journal_, index_->stamp());
    }
    correctCount(found);
    rebuildLocked({});
}

// The complete records are what the table holds. Whoever is adding one right now holds the append lock: then
// the count is his to set. Of a miscounted table only the count is written, so that a copy of the file that
// is still under way comes out right in the end; part of a record behind the last one goes when the table is
// left.
void Table::correctCount(Health found) {
    isCounted_ = true;
    if (!records_.file().tryLock(appendRange(), LockKind::Exclusive)) {
        return;
    }
    const FileLock appending(records_.file(), appendRange(), FileLock::alreadyHeld);
    records_.forgetSize();
    hasTail_ = records_.correctCount() || hasTail_;
    if (found == Health::DiedInUpdate) { // part of a row that never came to count
        records_.cutBehind(records_.recordCount());
    }
}

// --- The journal

// Whoever is alone and finds a journal of an earlier start of the machine makes the table whole again. Where
// others are at work, one of them has done so.
void Table::joinSession() {
    if (!journal_ || !journal_->exists()) {
        return;
    }
    File& file = records_.file();
    const bool hasMachineStopped = journal_->isOfAnotherStart();
    if (isReadOnly()) {
        if (hasMachineStopped && !file.isLockedByOthers(presenceLock)) {
            refuseStale(Health::DiedInUpdate);
        }
        return;
    }
    if (!file.tryLock(presenceLock, LockKind::Exclusive)) {
        return;
    }
    const StructureLock lock(structureFile(), structureHolders_, LockKind::Exclusive);
    if (hasMachineStopped) {
        redo(records_, journal_->keptEntries());
        correctCount(Health::DiedInUpdate);
        fillHoles(records_);
        file.sync();
        if (index_) {
            rebuildTrees(records_, *index_, {});
            index_->file().sync();
        }
        journal_->remove();
    } else { // a program died: a load may have left rows behind the end mark
        correctCount(Health::DiedInUpdate);
    }
    static_cast<void>(file.tryLock(presenceLock, LockKind::Shared)); // cannot fail: it is ours
}

// The last one to leave a table that was changed puts it on the disk; then no journal is needed.
void Table::leaveSession() {
    hold_.reset();
    try {
        if (!journal_ || isReadOnly() || !journal_->exists() ||
            !records_.file().tryLock(presenceLock, LockKind::Exclusive) ||
            !structureFile().tryLock(structureLock, LockKind::Shared)) {
            return;
        }
        // Under the lock: before, a network folder may show the mark as it was long ago.
        const FileLock lock(structureFile(), structureLock, FileLock::alreadyHeld);
        if (index_ && index_->stamp().inUpdate) {
            return;
        }
        records_.forgetSize();
        if (hasTail_ && !records_.isMiscounted()) {
            records_.dropBehind(records_.recordCount());
        }
        syncFiles();
        journal_->remove();
    } catch (...) {
        // The journal stays, and the next one to open the table looks at it.
    }
}

void Table::leave() {
    leaveSession();
    journal_.reset();
    records_.file().unlock(presenceLock);
}

void Table::beginJournal() {
    if (journal_ && journal_->begin()) { // whoever made these files may not have put them on the disk
        syncFiles();
    }
}

void Table::record(const RecordChange& change, std::uint64_t counter, Durability durability) {
    if (!journal_) {
        return;
    }
    const bool isKept = durability == Durability::Disk;
    // A new row that a death cuts short never counts: that something was written is all there is to say. On a
    // network folder its pieces reach the others in any order.
    const bool saysAll =
        isKept || records_.file().isRemote() ||
        std::ranges::none_of(change.runs(), [](const RecordRun& run) { return run.before.empty(); });
    const JournalEntry entry{counter, saysAll ? change.runs() : std::vector<RecordRun>()};
    if (journal_->mustRestartFor(entry, isKept)) {
        records_.file().sync();
        journal_->restart();
    }
    if (!saysAll && journal_->hasLooseEntry()) {
        return;
    }
    journal_->add(entry, isKept);
}

// A table that keeps no journal has nothing better than the record itself on the disk.
void Table::syncUnjournaled(Durability durability) {
    if (!journal_ && durability == Durability::Disk) {
        records_.file().sync();
    }
}

} // namespace dbase
