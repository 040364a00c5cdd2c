// Changes records together with their tags: gathered in memory first, then written under the in-update mark.

#include <algorithm>
#include <vector>

#include "dbase/system/error.h"
#include "dbase/table/exclusive_use.h"
#include "dbase/table/table.h"
#include "dbase/table/tag_changes.h"
#include "dbase/table/write_scope.h"

namespace dbase {

namespace {

// New records, if any, are the last run.
[[nodiscard]] bool isNew(const RecordRun& run) { return run.before.empty(); }

void writeAfter(TableFile& records, const RecordChange& change) {
    for (const RecordRun& run : change.runs()) {
        if (isNew(run)) {
            const RecordNumber last = run.first + run.rows - 1;
            records.writeTail(run.first, run.after);
            records.setCount(last);
            records.cutTailIfAny(last);
        } else {
            records.overwrite(run.first, run.after);
        }
    }
}

void writeBefore(TableFile& records, const RecordChange& change) {
    for (const RecordRun& run : change.runs()) {
        if (isNew(run)) {
            records.setCount(run.first - 1);
            records.cutTail(run.first - 1);
        } else {
            records.overwrite(run.first, run.before);
        }
    }
}

/// The exclusive use of a table for one change, unless a scope has it already.
class OwnUse {
public:
    OwnUse(Table& table, const WriteScope* scope) {
        if (scope == nullptr) {
            use_.emplace(table);
        }
    }
    /// Null if a scope has it.
    [[nodiscard]] ExclusiveUse* get() { return use_ ? &*use_ : nullptr; }

private:
    std::optional<ExclusiveUse> use_;
};

/// Locks consecutive records for one change: a single lock if none of them is held, or else one for each that
/// is not held.
class NeighbourLocks {
public:
    NeighbourLocks(File& file, RecordNumber first, RecordNumber last, bool together) : file_(file) {
        const LockRange all{recordLock(last).offset, last - first + 1};
        held_.reserve(1);
        if (together && file_.tryLock(all, LockKind::Exclusive)) {
            held_.push_back(all);
            hasAll_ = true;
        }
    }
    ~NeighbourLocks() {
        for (const LockRange& range : held_) {
            file_.unlock(range);
        }
    }
    NeighbourLocks(const NeighbourLocks&) = delete;
    NeighbourLocks& operator=(const NeighbourLocks&) = delete;

    [[nodiscard]] bool take(RecordNumber number) {
        if (hasAll_) {
            return true;
        }
        held_.push_back(recordLock(number)); // first: a failure here must not leave a lock
        if (file_.tryLock(recordLock(number), LockKind::Exclusive)) {
            return true;
        }
        held_.pop_back();
        return false;
    }

private:
    File& file_;
    std::vector<LockRange> held_;
    bool hasAll_ = false;
};

} // namespace

// Sends what was written so far to the server of a network folder before what comes next, so that a
// workstation switched off while others go on never leaves part of a change there without the mark.
void Table::sendFirst() {
    if (records_.file().isRemote()) {
        recovery().sync();
    }
}

// Writes the mark, the journal, the record, the pages, the mark again. A failure on the way is undone; if
// that fails too, the mark stays set, and the next program to use the table recovers it. Pages already
// written and forgotten cannot be restored: then only the record is, under the mark.
template<typename Write, typename Undo>
void Table::apply(const RecordChange& change, Durability durability, std::uint32_t count, Write&& write,
                  Undo&& undo) {
    recovery().beginJournal();
    const UpdateStamp before = index_ ? index_->stamp() : UpdateStamp{};
    const std::uint32_t countBefore = records_.recordCount();
    const auto writeStamp = [&](const UpdateStamp& stamp) {
        if (index_) {
            index_->writeStamp(stamp);
        }
    };
    bool restored = true, isTouched = false;
    try {
        writeStamp(before.begun(count));
        writeJournal(change, index_ ? before.begun(count).counter : 0, durability);
        sendFirst();
        isTouched = true;
        write();
        if (index_) {
            index_->writeChangesOrRestore(restored);
            restored = false;
            sendFirst();
            writeStamp(before.ended(count));
        }
    } catch (...) {
        if (journal_) {
            journal_->withdraw();
        }
        try {
            if (!restored) {
                writeStamp(before.begun(count)); // before records and pages no longer match
            }
            if (isTouched) {
                undo();
            }
            if (restored) {
                writeStamp(before.ended(countBefore));
            }
        } catch (...) {
            // The mark stays set; the first error is the one to report.
        }
        throw;
    }
}

// Stores a change whose tags have been gathered.
void Table::store(const RecordChange& change, Durability durability) {
    const RecordRun& last = change.runs().back();
    apply(
        change, durability, isNew(last) ? last.first + last.rows - 1 : records_.recordCount(),
        [&] { writeAfter(records_, change); }, [&] { writeBefore(records_, change); });
}

void Table::requireWhole(std::span<const char> record) const {
    if (record.size() != schema().recordLength) {
        throw Error(ErrorCode::BadValue, path(), "el registro no tiene la longitud de la tabla");
    }
}

RecordNumber Table::append(std::span<const char> record, Durability durability) {
    requireWritable();
    requireWhole(record);
    if (scope_ != nullptr && scope_->gathers()) {
        return scope_->append(record, durability);
    }
    const LockWaits waits;
    RecordNumber number = 0;
    {
        OwnUse use(*this, scope_);
        if (use.get() != nullptr) {
            use.get()->lockAppend();
        } else {
            scope_->lockAppend();
        }
        const std::uint32_t count = records_.recordCount();
        number = count + 1;
        TagChanges tags(records_, index_.get());
        tags.add({&schema(), record, number});
        RecordChange change;
        change.add(number, {}, record);
        store(change, durability);
    }
    syncUnjournaled(durability);
    return number;
}

std::vector<char> Table::requireShown(RecordNumber number, std::span<const char> shown) const {
    if (number != 0 && number <= records_.recordCount()) {
        const std::span<const char> stored = records_.record(number).bytes;
        if (std::ranges::equal(stored, shown)) {
            return {stored.begin(), stored.end()};
        }
    }
    throw Error(ErrorCode::RecordChanged, path(),
                "otro usuario ha cambiado o borrado el registro " + std::to_string(number) +
                    "; vuelva a leerlo y repita la operación");
}

void Table::overwrite(RecordNumber number, std::span<const char> shown, std::span<const char> record,
                      Durability durability) {
    requireWritable();
    requireWhole(record);
    if (scope_ != nullptr && scope_->gathers()) {
        scope_->overwrite(number, requireShown(number, shown), record, durability);
        return;
    }
    {
        const OwnUse use(*this, scope_);
        const std::vector<char> before = requireShown(number, shown);
        TagChanges tags(records_, index_.get());
        tags.replace({&schema(), before, number}, {&schema(), record, number});
        RecordChange change;
        change.add(number, before, record);
        store(change, durability);
    }
    syncUnjournaled(durability);
}

void Table::erase(RecordNumber number, std::span<const char> shown, Durability durability) {
    requireWhole(shown);
    std::vector<char> deleted(shown.begin(), shown.end());
    deleted[0] = '*';
    overwrite(number, shown, deleted, durability);
}

// The search for a key's successor in a unique tag reads stored records: it must not meet one whose change
// has only been gathered.
bool Table::changesOneByOne() const {
    return index_ && std::any_of(index_->tags().begin(), index_->tags().end(),
                                 [](const Tag& tag) { return tag.definition.unique; });
}

/// What amend() does to each run of records that it changes as one.
struct Table::Pass {
    const Amendment& amendment;
    const LeftOut& leftOut;
    Durability durability;
    std::function<bool(RecordNumber)> take; // takes a record's lock; false if another owner holds it
};

RecordNumber Table::amend(RecordNumber first, RecordNumber most, const Amendment& amendment,
                          Durability durability, const LeftOut& leftOut) {
    requireWritable();
    const ExclusiveUse use(*this);
    const std::uint32_t count = records_.recordCount();
    if (first == 0 || most == 0 || first > count) {
        return 0;
    }
    most = std::min(most, static_cast<RecordNumber>(largestChange / 2 / schema().recordLength));
    const RecordNumber last = most <= count - first ? first + most - 1 : count;
    NeighbourLocks locks(records_.file(), first, last, !recordLocks_.isAnyHeld(first, last));
    const Pass pass{amendment, leftOut, durability,
                    [&](RecordNumber number) { return !recordLocks_.isHeld(number) && locks.take(number); }};
    const RecordNumber step = changesOneByOne() ? 1 : last - first + 1;
    for (RecordNumber begin = first; begin <= last; begin += step) {
        amendLocked(begin, begin + step - 1, pass);
    }
    return last < count ? last + 1 : 0;
}

void Table::amendLocked(RecordNumber first, RecordNumber last, const Pass& pass) {
    RecordChange change;
    TagChanges tags(records_, index_.get());
    std::vector<char> stored, changed;
    for (RecordNumber number = first; number <= last; ++number) {
        const bool isTaken = pass.take(number);
        if (!isTaken && !pass.leftOut) {
            continue;
        }
        const std::span<const char> bytes = records_.record(number).bytes;
        stored.assign(bytes.begin(), bytes.end());
        const RecordView record{&schema(), stored, number};
        if (record.isDeleted()) {
            continue;
        }
        if (!isTaken) {
            pass.leftOut(record);
            continue;
        }
        changed = stored;
        pass.amendment(record, changed);
        if (changed != stored) {
            tags.replace(record, {&schema(), changed, number});
            change.add(number, stored, changed);
        }
    }
    if (change.empty()) {
        return;
    }
    store(change, pass.durability);
    syncUnjournaled(pass.durability);
}

} // namespace dbase
