#include "dbase/table.h"

#include <algorithm>

#include "dbase/codepage.h"
#include "dbase/error.h"
#include "dbase/tree_cursor.h"

namespace dbase {

Table::Table(std::unique_ptr<File> records, std::unique_ptr<File> index, std::string readOnlyReason)
    : records_(std::move(records)), readOnlyReason_(std::move(readOnlyReason)) {
    const auto refuseWriting = [this](const std::string& reason) {
        if (readOnlyReason_.empty()) {
            readOnlyReason_ = reason;
        }
    };
    if (!records_.file().isWritable() || (index && !index->isWritable())) {
        refuseWriting("no hay permiso para escribir en " + path());
    }
    if (std::any_of(schema().columns.begin(), schema().columns.end(),
                    [](const Column& column) { return column.type == ColumnType::Memo; })) {
        refuseWriting("la tabla tiene campos memo, que aquí no se escriben");
    }
    if (!index) {
        if (schema().hasProductionIndex) {
            refuseWriting("falta el índice (.MDX) de " + path() + "; ejecute \"ambcp reindexar\"");
        }
        return;
    }
    index_ = std::make_unique<IndexFile>(std::move(index), schema());
    structureHolders_.release = everyLock; // nothing else is ever locked in an .MDX
    for (const Tag& tag : index_->tags()) {
        if (!tag.isUnderstood()) {
            refuseWriting(tag.problem);
        }
    }
    if (driverOrderIsUnknown(schema().languageDriver)) {
        refuseWriting("no se conoce el orden de claves de su idioma (español OEM)");
    }
    // Now, not at the first question: a table whose index was left behind is made whole, or refused, when it
    // is opened.
    read([this] {
        index_->settleOrders();
        return true;
    });
}

Table::~Table() = default;

std::vector<std::string> Table::tagNames() const {
    std::vector<std::string> names;
    if (index_) {
        for (const Tag& tag : index_->tags()) {
            names.push_back(tag.definition.name);
        }
    }
    return names;
}

void Table::requireWritable() const {
    if (isReadOnly()) {
        throw Error(ErrorCode::ReadOnly, path(), "sólo se puede leer: " + readOnlyReason_);
    }
}

File& Table::structureFile() const { return index_ ? index_->file() : records_.file(); }

// In a table without index the structure lock has the header byte already.
LockRange Table::appendRange() const { return index_ ? appendLock : LockRange{lock_offset::append, 1}; }

bool Table::isTorn() const { return records_.file().viewIsTorn() || (index_ && index_->file().viewIsTorn()); }

void Table::renewTornViews() {
    if (isTorn()) {
        records_.forgetSize();
        records_.file().renewView();
        if (index_) {
            index_->forgetSize();
            index_->file().renewView();
        }
    }
}

std::uint64_t Table::changeCounter() const { return index_ ? index_->stamp().counter : 0; }

bool Table::tryReadByCounter(std::uint64_t& before) const {
    const UpdateStamp stamp = index_->stamp();
    before = stamp.counter;
    return stamp.present && !stamp.inUpdate && stamp.counter % 2 == 0 && !isTorn() &&
           stamp.records == records_.recordCount();
}

// --- Health of the index

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
    if (!index_) {
        return Health::Sound;
    }
    const UpdateStamp stamp = index_->stamp();
    if (stamp.present && stamp.inUpdate) {
        return Health::DiedInUpdate;
    }
    const RecordNumber count = records_.recordCount();
    if ((stamp.present && stamp.records == count) || (verified_ && verifiedCount_ == count)) {
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
    verified_ = true;
    verifiedCount_ = count;
    return Health::Sound;
}

void Table::refuseStale(Health found) const {
    const std::string what = found == Health::DiedInUpdate
                                 ? "un programa terminó mientras escribía y el índice quedó a medias"
                                 : "el índice no corresponde a los registros";
    throw Error(ErrorCode::StaleIndex, index_->path(),
                what + "; no se puede rehacer porque la tabla es de sólo lectura (" + readOnlyReason_ +
                    "). Ejecute \"ambcp reindexar\" con permiso de escritura");
}

void Table::recover() {
    const StructureLock lock(structureFile(), structureHolders_, LockKind::Exclusive);
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
        // Rows are lost. Tags made anew would agree with what is left and hide it.
        throw Error(ErrorCode::BadTable, path(),
                    "la tabla está cortada: dice tener " + std::to_string(records_.announcedCount()) +
                        " registros y quedan " + std::to_string(records_.recordCount()) +
                        "; recupere una copia, o ejecute \"ambcp reindexar\" para seguir con los que quedan");
    }
    if (found == Health::DiedInUpdate && records_.file().tryLock(appendRange(), LockKind::Exclusive)) {
        const FileLock appending(records_.file(), appendRange(), FileLock::alreadyHeld);
        records_.cutBehind(
            records_.recordCount()); // what the dead one wrote of a row that never came to count
    }
    rebuildLocked({});
}

// --- Record locks

bool Table::tryLockRecord(RecordNumber number, const void* owner) {
    requireWritable();
    if (const auto held = recordLocks_.find(number); held != recordLocks_.end()) {
        return held->second == owner;
    }
    if (!records_.file().tryLock(recordLock(number), LockKind::Exclusive)) {
        return false;
    }
    recordLocks_.emplace(number, owner);
    return true;
}

void Table::unlockRecord(RecordNumber number, const void* owner) {
    if (const auto held = recordLocks_.find(number); held != recordLocks_.end() && held->second == owner) {
        records_.file().unlock(recordLock(number));
        recordLocks_.erase(held);
    }
}

void Table::unlockRecords(const void* owner) {
    for (auto held = recordLocks_.begin(); held != recordLocks_.end();) {
        if (held->second == owner) {
            records_.file().unlock(recordLock(held->first));
            held = recordLocks_.erase(held);
        } else {
            ++held;
        }
    }
}

} // namespace dbase
