// Opens a table, and reads it under its lock.
#include "dbase/table/table.h"

#include <algorithm>

#include "dbase/dbf/codepage.h"
#include "dbase/dbf/collation.h"
#include "dbase/lock/read_scope.h"
#include "dbase/system/error.h"
#include "dbase/table/write_scope.h"

namespace dbase {

Table::Table(std::unique_ptr<File> records, std::unique_ptr<File> index, std::string readOnlyReason,
             std::unique_ptr<JournalPlace> journal)
    : records_(std::move(records)), readOnlyReason_(std::move(readOnlyReason)) {
    if (journal) {
        journal_.emplace(std::move(journal), schema());
    }
    for (const File* file :
         {static_cast<const File*>(&records_.file()), static_cast<const File*>(index.get())}) {
        if (file != nullptr && !file->isWritable()) {
            refuseWriting("no hay permiso para escribir en " + file->path());
        }
    }
    if (std::any_of(schema().columns.begin(), schema().columns.end(),
                    [](const Column& column) { return column.type == ColumnType::Memo; })) {
        refuseWriting("la tabla tiene campos memo, que aquí no se escriben");
    }
    if (!index) {
        if (schema().hasProductionIndex) {
            refuseWriting("falta el índice (.MDX) de " + path() + "; ejecute \"ambcp reindexar\"");
        }
        joinSession();
        return;
    }
    index_ = std::make_unique<IndexFile>(std::move(index), schema());
    structureHolders_.release = everyLock; // an .MDX never has any other lock
    if (records_.file().isRemote()) {
        structureHolders_.exchanged = &records_.file();
    }
    for (const Tag& tag : index_->tags()) {
        if (!tag.isUnderstood()) {
            refuseWriting(tag.problem);
        }
    }
    if (driverOrderIsUnknown(schema().languageDriver)) {
        refuseWriting("no se conoce el orden de claves de su idioma (español OEM)");
    }
    // A table left in the middle of an operation is recovered or refused on opening, not at the first use.
    joinSession();
    read([this] {
        index_->determineOrders();
        return true;
    });
}

Table::~Table() { leaveSession(); }

std::vector<std::string> Table::tagNames() const {
    std::vector<std::string> names;
    if (index_) {
        for (const Tag& tag : index_->tags()) {
            names.push_back(tag.definition.name);
        }
    }
    return names;
}

// The first reason stands: it is about the files themselves.
void Table::refuseWriting(const std::string& reason) {
    if (readOnlyReason_.empty()) {
        readOnlyReason_ = reason;
    }
}

void Table::refuseReplaced() const {
    throw Error(
        ErrorCode::Replaced, path(),
        "otro programa ha sustituido o borrado la tabla desde que se abrió; ciérrela y vuelva a abrirla");
}

void Table::requireInPlace() {
    if (names_ && !names_->leadHere()) {
        refuseReplaced();
    }
}

void Table::requireWritable() const {
    if (isReadOnly()) {
        throw Error(ErrorCode::ReadOnly, path(), "sólo se puede leer: " + readOnlyReason_);
    }
}

bool Table::isTorn() const { return records_.file().viewIsTorn() || (index_ && index_->file().viewIsTorn()); }

void Table::renewTornViews() {
    const bool areTorn = isTorn();
    if (!areTorn && !records_.file().isRemote()) {
        return;
    }
    records_.forgetSize();
    if (index_) {
        index_->forgetSize();
    }
    if (areTorn) {
        records_.file().renewView();
        if (index_) {
            index_->file().renewView();
        }
    }
}

std::uint64_t Table::changeCounter() const {
    if (!index_) {
        return 0;
    }
    return scope_ != nullptr && scope_->counter() != 0 ? scope_->counter() : index_->stamp().counter;
}

void Table::guardRead(const std::function<void()>& operation) {
    if (scope_ != nullptr) { // it holds the lock, and has found the table sound
        runWhole(operation);
        return;
    }
    if (!hold_) {
        hold_.emplace(structureFile(), structureHolders_);
    }
    hold_->giveWay();
    const LockWaits waits;
    while (!tryReadLocked(operation)) {
        recover();
    }
}

// False, with nothing done, if the table must be recovered first.
bool Table::tryReadLocked(const std::function<void()>& operation) {
    const StructureLock lock(structureFile(), structureHolders_, LockKind::Shared);
    if (hold_->number() == 0 || isTorn()) { // otherwise nothing can have changed since the last check
        if (names_ && !names_->ledHereLately()) {
            refuseReplaced();
        }
        renewTornViews();
        if (const Health found = health(); found != Health::Sound) {
            if (isReadOnly()) {
                refuseStale(found);
            }
            return false;
        }
        hold_->keep();
    }
    runWhole(operation);
    return true;
}

void Table::runWhole(const std::function<void()>& operation) const {
    operation();
    if (isTorn()) {
        throw Error(ErrorCode::Io, path(), "otro programa ha cortado el fichero mientras se leía");
    }
}

bool Table::tryLockRecord(RecordNumber number, const void* owner) {
    requireWritable();
    if (scope_ == nullptr) {
        ReadScope::letGo(); // so that reads under the lock see the current state
        requireInPlace();
    } else if (recordLocks_.pass(number, scope_, owner) || scope_->tryLockToAppend(number, owner)) {
        return true;
    }
    return recordLocks_.tryLock(number, owner);
}

// Programs that know only record locks must not change a record between its change and the scope's commit.
void Table::unlockRecord(RecordNumber number, const void* owner) {
    if (scope_ == nullptr || !scope_->keepsLock(number) || !recordLocks_.pass(number, owner, scope_)) {
        recordLocks_.unlock(number, owner);
    }
}

void Table::unlockRecords(const void* owner) {
    if (scope_ != nullptr && scope_->keepsLock(1)) {
        recordLocks_.pass(1, owner, scope_);
    }
    recordLocks_.unlockAll(owner);
}

} // namespace dbase
