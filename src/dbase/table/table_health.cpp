// Determines the state of a table that a program, or the machine, left in the middle of something, and
// recovers it.

#include <algorithm>

#include "dbase/mdx/index_rebuild.h"
#include "dbase/mdx/tree_cursor.h"
#include "dbase/system/counted.h"
#include "dbase/table/exclusive_use.h"
#include "dbase/table/table.h"

namespace dbase {

namespace {

bool isOneNewRow(const RecordChange& change) {
    return change.runs().size() == 1 && change.runs().front().rows == 1 &&
           change.runs().front().before.empty();
}

} // namespace

bool Table::entriesMatchRecords() const {
    const auto tag = std::find_if(index_->tags().begin(), index_->tags().end(),
                                  [](const Tag& candidate) { return candidate.holdsAllRecords(); });
    if (tag == index_->tags().end()) {
        return !index_->stamp().present; // nothing can be counted cheaply: only our own stamp says
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
    // Another program has added records, perhaps keeping the tags up to date: counts the entries of one tag
    // to find out.
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
        : found == Health::Restored
            ? "hay un diario de otros ficheros: se ha recuperado una copia de la tabla"
            : "el índice no corresponde a los registros";
    throw Error(ErrorCode::StaleIndex, index_ ? index_->path() : path(),
                what + "; no se puede rehacer porque la tabla es de sólo lectura (" + readOnlyReason_ +
                    "). Ejecute \"ambcp reindexar\" con permiso de escritura");
}

void Table::recover() { const ExclusiveUse use(*this); }

Recovery Table::recovery() {
    return {records_, index_ ? &index_->file() : nullptr, journal_ ? &*journal_ : nullptr};
}

const Column& Table::keyColumn() const {
    std::vector<Expression> keys;
    if (index_) {
        for (const Tag& tag : index_->tags()) {
            if (tag.isUnderstood()) {
                keys.push_back(*tag.key);
            }
        }
    }
    return identifyingColumn(schema(), keys);
}

void Table::recoverLocked(Health found) {
    if (found == Health::Sound) {
        return; // another program may have been faster
    }
    if (isReadOnly()) {
        refuseStale(found);
    }
    if (found == Health::Stale && records_.announcedCount() > records_.recordCount()) {
        // Truncated while open: another one may be being copied over it. A program that opens the table again
        // continues with the records present then.
        throw Error(ErrorCode::BadTable, path(),
                    "otro programa ha cortado la tabla: dice tener " +
                        counted(records_.announcedCount(), "registro", "registros") +
                        (records_.recordCount() == 1 ? " y queda " : " y quedan ") +
                        std::to_string(records_.recordCount()) +
                        "; ciérrela, recupere una copia si la tiene y vuelva a abrirla");
    }
    Recovery steps = recovery();
    if (found == Health::Stopped) {
        steps.afterStop(keyColumn());
    } else {
        hasTail_ = (found == Health::Restored ? steps.afterRestore()
                                              : steps.afterDeath(index_ ? index_->stamp() : UpdateStamp{})) ||
                   hasTail_;
    }
    isCounted_ = true; // even if another program is adding a row, because it counts that row itself
    rebuildLocked({});
    if (found == Health::Stopped || found == Health::Restored) {
        steps.sync();
        endJournal(steps);
    }
}

// One that stays will be redone again: nothing must change in between.
void Table::endJournal(Recovery& steps) {
    try {
        steps.endJournal();
    } catch (const Error& error) {
        if (error.code() != ErrorCode::AccessDenied) {
            throw;
        }
        refuseWriting(error.what());
    }
}

void Table::rebuildTags(const Progress& progress) {
    requireWritable();
    ExclusiveUse(*this).rebuildTags(progress);
}

void Table::rebuildLocked(const Progress& progress) {
    if (index_) {
        rebuildTrees(records_, *index_, progress);
        verifiedCount_ = index_->stamp().records; // without those that others have added meanwhile
    }
}

// --- The journal

// False if there is none, or one that must be left alone: nothing is written without one of our own.
bool Table::findsJournal() {
    try {
        return journal_ && journal_->exists();
    } catch (const Error& error) {
        if (error.code() != ErrorCode::AccessDenied) {
            throw;
        }
        journal_.reset();
        refuseWriting(error.what());
        return false;
    }
}

// A table that cannot be written says so now, not at its first change.
void Table::joinSession() {
    if (findsJournal()) {
        recoverSession();
    }
    if (journal_ && !isReadOnly()) {
        refuseWriting(journal_->objectionToWriting());
    }
}

// A program that is alone recovers what an earlier boot of the machine, or a program that died, left. If
// others are at work, one of them has done so already.
void Table::recoverSession() {
    File& file = records_.file();
    const Health left = recovery().hasOthersJournal()  ? Health::Restored
                        : journal_->isOfAnotherStart() ? Health::Stopped
                                                       : Health::Sound;
    if (isReadOnly()) {
        if (left != Health::Sound && !file.isLockedByOthers(presenceLock)) {
            refuseStale(left == Health::Stopped ? Health::DiedInUpdate : left);
        }
        return;
    }
    if (!file.tryLock(presenceLock, LockKind::Exclusive)) {
        return;
    }
    {
        const ExclusiveUse use(*this, left);
        if (left == Health::Sound && !hasTail_) { // an interrupted load leaves rows after the end mark
            recovery().tail();
            cutTreesOfInterruptedLoad();
        }
        if (left == Health::Sound && !journal_->objectionToWriting().empty()) { // ours can take its place
            Recovery steps = recovery();
            steps.sync();
            endJournal(steps);
        }
    }
    static_cast<void>(file.tryLock(presenceLock, LockKind::Shared)); // cannot fail: it is ours
}

void Table::cutTreesOfInterruptedLoad() {
    try {
        if (index_) {
            cutLeftTrees(*index_);
        }
    } catch (const Error& error) {
        if (error.code() != ErrorCode::BadIndex) { // that is reported where the tree is used
            throw;
        }
    }
}

// The last writer to leave a table flushes it to the disk; then no journal is needed, and none shuts out
// those who only read.
void Table::leaveSession() {
    hold_.reset();
    try {
        if (names_ && !names_->leadHere()) {
            return; // what is there now belongs to another table
        }
        if (!journal_ || isReadOnly() || !journal_->exists() ||
            !records_.file().tryLock(writingLock, LockKind::Exclusive) ||
            !structureFile().tryLock(structureLock, LockKind::Shared)) {
            return;
        }
        // Under the lock, because without it a network folder may show an outdated mark.
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
        // The journal stays, and the next program to open the table checks it.
    }
}

void Table::leave() {
    leaveSession();
    journal_.reset();
    records_.file().unlock(writingLock);
    records_.file().unlock(presenceLock);
}

void Table::writeJournal(const RecordChange& change, std::uint64_t counter, Durability durability) {
    if (!journal_) {
        return;
    }
    const bool isKept = durability == Durability::Disk;
    // A new row cut short by a death never counts: alone, the entry need only show that something was
    // written. On a network folder, though, its pieces reach the others in any order.
    const bool saysAll = isKept || records_.file().isRemote() || !isOneNewRow(change);
    const JournalEntry entry{counter, saysAll ? change.runs() : std::vector<RecordRun>()};
    if (journal_->mustRestartFor(entry, isKept)) {
        records_.file().sync();
        journal_->restart(originOf(records_));
    }
    if (!saysAll && journal_->hasLooseEntry()) {
        return;
    }
    journal_->add(entry, isKept);
}

// Without a journal, flushing the record itself to the disk is the best that can be done.
void Table::syncUnjournaled(Durability durability) {
    if (!journal_ && durability == Durability::Disk) {
        records_.file().sync();
    }
}

} // namespace dbase
