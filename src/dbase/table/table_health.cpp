// What state a table is in that a program, or the machine, left in the middle of something, and when it is
// recovered.

#include <algorithm>

#include "dbase/mdx/index_rebuild.h"
#include "dbase/mdx/tree_cursor.h"
#include "dbase/table/exclusive_use.h"
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

void Table::recover() { const ExclusiveUse use(*this); }

Recovery Table::recovery() {
    return {records_, index_ ? &index_->file() : nullptr, journal_ ? &*journal_ : nullptr};
}

void Table::recoverLocked(Health found) {
    if (found == Health::Sound) {
        return; // perhaps another program was faster
    }
    if (isReadOnly()) {
        refuseStale(found);
    }
    if (found == Health::Stale && records_.announcedCount() > records_.recordCount()) {
        // Cut while it is open: somebody may be copying another one over it. A program that opens it anew
        // goes on with the records that are there then.
        throw Error(ErrorCode::BadTable, path(),
                    "otro programa ha cortado la tabla: dice tener " +
                        std::to_string(records_.announcedCount()) + " registros y quedan " +
                        std::to_string(records_.recordCount()) +
                        "; ciérrela, recupere una copia si la tiene y vuelva a abrirla");
    }
    if (found == Health::Stopped) {
        recovery().afterStop();
    } else if (recovery().afterDeath(index_ ? index_->stamp() : UpdateStamp{})) {
        hasTail_ = true;
    }
    isCounted_ = true; // also where another program is adding a row, which counts it itself
    rebuildLocked({});
    if (found == Health::Stopped) {
        recovery().sync();
        journal_->remove();
    }
}

void Table::rebuildTags(const Progress& progress) {
    requireWritable();
    ExclusiveUse(*this).rebuildTags(progress);
}

void Table::rebuildLocked(const Progress& progress) {
    if (index_) {
        rebuildTrees(records_, *index_, progress);
        verifiedCount_ = index_->stamp().records; // not those that others added meanwhile
    }
}

// --- The journal

// A program that is alone recovers what it finds of an earlier start of the machine, or of one that died.
// Where others are at work, one of them has done so.
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
    {
        using AfterStop = ExclusiveUse::AfterStop;
        const ExclusiveUse use(*this, hasMachineStopped ? AfterStop::Yes : AfterStop::No);
        if (!hasMachineStopped && !hasTail_) { // a load that died leaves rows after the end mark
            recovery().tail();
        }
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
            recovery().tail();
        }
        recovery().sync();
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

void Table::writeJournal(const RecordChange& change, std::uint64_t counter, Durability durability) {
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
