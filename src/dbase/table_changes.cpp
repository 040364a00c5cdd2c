// Changing records together with their tags: gathered in memory first, then written under the in-update mark.

#include <algorithm>
#include <array>
#include <vector>

#include "dbase/error.h"
#include "dbase/table.h"
#include "dbase/tree_cursor.h"
#include "dbase/tree_editor.h"

namespace dbase {

namespace {

using KeyBytes = std::array<char, maxKeyLength>;

std::string_view keyOf(const Tag& tag, const RecordView& record, KeyBytes& buffer) {
    makeKey(tag, record, std::span(buffer).first(tag.keyLength));
    return {buffer.data(), tag.keyLength};
}

bool belongs(const Tag& tag, const RecordView& record) {
    return !tag.condition || tag.condition->test(record);
}

void writeAfter(TableFile& records, const RecordChange& change) {
    for (const RecordRun& run : change.runs()) {
        records.overwrite(run.first, run.after);
    }
}

void writeBefore(TableFile& records, const RecordChange& change) {
    for (const RecordRun& run : change.runs()) {
        records.overwrite(run.first, run.before);
    }
}

/// The locks of neighbouring records for the time of one change: one for all of them where nobody holds any,
/// else one for each that nobody holds.
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
        held_.push_back(recordLock(number)); // first: what fails here must leave no lock behind
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

/// Forgets at its end what was gathered for the index and not written.
class Gathering {
public:
    explicit Gathering(IndexFile* index) : index_(index) {}
    ~Gathering() {
        if (index_ != nullptr) {
            index_->dropChanges();
        }
    }
    Gathering(const Gathering&) = delete;
    Gathering& operator=(const Gathering&) = delete;

private:
    IndexFile* index_;
};

} // namespace

void Table::gatherInsertion(const Tag& tag, const RecordView& record) {
    if (!belongs(tag, record)) {
        return;
    }
    KeyBytes buffer;
    const std::string_view key = keyOf(tag, record, buffer);
    TreeEditor tree(*index_, tag);
    if (tag.definition.unique) { // only the first record with a key has an entry
        TreeCursor cursor(*index_, tag);
        if (cursor.seek(key) && tag.order.compare(cursor.key(), key) == 0) {
            const std::string held(cursor.key());
            if (cursor.record() <= record.number || !tree.remove(held, cursor.record())) {
                return;
            }
        }
    }
    tree.insert(key, record.number);
}

// The first other record with a key that nobody holds in a unique tag any more.
void Table::gatherSuccessor(const Tag& tag, std::string_view key, RecordNumber leaving) {
    const RecordNumber count = records_.recordCount();
    KeyBytes buffer;
    for (RecordNumber number = 1; number <= count; ++number) {
        const RecordView record = records_.record(number);
        if (number != leaving && belongs(tag, record) &&
            tag.order.compare(keyOf(tag, record, buffer), key) == 0) {
            TreeEditor(*index_, tag).insert(key, number);
            return;
        }
    }
}

void Table::gatherRemoval(const Tag& tag, const RecordView& record) {
    if (!belongs(tag, record)) {
        return;
    }
    KeyBytes buffer, foreign;
    const std::string_view key = keyOf(tag, record, buffer);
    TreeEditor tree(*index_, tag);
    bool removed = tree.remove(key, record.number);
    if (!removed && makeUnsignedKey(tag, record, std::span(foreign).first(tag.keyLength))) {
        removed = tree.remove({foreign.data(), tag.keyLength}, record.number);
    }
    if (removed && tag.definition.unique) {
        gatherSuccessor(tag, key, record.number);
    }
    if (!removed && tag.holdsAllRecords()) {
        throw Error(ErrorCode::BadIndex, index_->path(),
                    "el registro " + std::to_string(record.number) + " no está en el tag " +
                        tag.definition.name + "; ejecute \"ambcp reindexar\"");
    }
}

void Table::gatherReplacement(const RecordView& before, const RecordView& after) {
    if (!index_) {
        return;
    }
    for (const Tag& tag : index_->tags()) {
        const bool was = belongs(tag, before);
        const bool is = belongs(tag, after);
        KeyBytes oldBuffer, newBuffer;
        if (was == is && (!was || keyOf(tag, before, oldBuffer) == keyOf(tag, after, newBuffer))) {
            continue;
        }
        gatherRemoval(tag, before);
        gatherInsertion(tag, after);
    }
}

// The server of a network folder gets what was written so far before what comes next: a workstation that is
// switched off, while others go on, leaves no part of a change there without the mark.
void Table::sendFirst() {
    if (records_.file().isRemote()) {
        records_.file().sync();
        if (index_) {
            index_->file().sync();
        }
    }
}

// The mark, the journal, the record, the pages, the mark again. What fails on the way is undone; what cannot
// be undone leaves the mark standing, and the next one to touch the table rebuilds the tags. Pages that are
// written and forgotten already cannot be put back: then the record is, under the mark.
template<typename Write, typename Undo>
void Table::apply(const RecordChange& change, std::uint32_t count, Write&& write, Undo&& undo) {
    const UpdateStamp stamp = index_ ? index_->stamp() : UpdateStamp{};
    const std::uint64_t counter = stamp.counter - stamp.counter % 2;
    const std::uint32_t countBefore = records_.recordCount();
    const auto writeMark = [&](bool inUpdate, std::uint32_t records) {
        if (index_) {
            index_->writeStamp({true, inUpdate, records, counter + (inUpdate ? 1 : 2)});
        }
    };
    bool restored = true, isTouched = false;
    try {
        beginJournal();
        writeMark(true, count);
        record(change, index_ ? counter + 1 : 0);
        sendFirst();
        isTouched = true;
        write();
        if (index_) {
            index_->writeChanges(restored);
            restored = false;
            sendFirst();
            writeMark(false, count);
        }
    } catch (...) {
        if (journal_) {
            journal_->withdraw();
        }
        try {
            if (!restored) {
                writeMark(true, count); // before the records leave the pages' side
            }
            if (isTouched) {
                undo();
            }
            if (restored) {
                writeMark(false, countBefore);
            }
        } catch (...) {
            // The mark stands; the first fault is the one to tell.
        }
        throw;
    }
}

void Table::requireWhole(std::span<const char> record) const {
    if (record.size() != schema().recordLength) {
        throw Error(ErrorCode::BadValue, path(), "el registro no tiene la longitud de la tabla");
    }
}

RecordNumber Table::append(std::span<const char> record) {
    requireWritable();
    requireWhole(record);
    RecordNumber number = 0;
    {
        const StructureLock lock(structureFile(), structureHolders_, LockKind::Exclusive);
        renewTornViews();
        mend(health());
        const FileLock appending(records_.file(), appendRange(), LockKind::Exclusive);
        const std::uint32_t count = records_.recordCount();
        number = count + 1;
        const Gathering gathering(index_.get());
        if (index_) {
            for (const Tag& tag : index_->tags()) {
                gatherInsertion(tag, {&schema(), record, number});
            }
        }
        RecordChange change;
        change.add(number, {}, record);
        apply(
            change, number,
            [&] {
                records_.writeBehind(number, record);
                records_.setCount(number);
                records_.cutBehind(number);
            },
            [&] {
                records_.setCount(count);
                records_.dropBehind(count);
            });
    }
    syncUnjournaled();
    return number;
}

void Table::overwrite(RecordNumber number, std::span<const char> shown, std::span<const char> record) {
    requireWritable();
    requireWhole(record);
    {
        const StructureLock lock(structureFile(), structureHolders_, LockKind::Exclusive);
        renewTornViews();
        mend(health());
        const std::uint32_t count = records_.recordCount();
        const bool isThere = number != 0 && number <= count;
        std::vector<char> before;
        if (isThere) {
            const RecordView stored = records_.record(number);
            before.assign(stored.bytes.begin(), stored.bytes.end());
        }
        if (!isThere || !std::equal(before.begin(), before.end(), shown.begin(), shown.end())) {
            throw Error(ErrorCode::RecordChanged, path(),
                        "otro usuario ha cambiado o borrado el registro " + std::to_string(number) +
                            "; vuelva a leerlo y repita la operación");
        }
        const Gathering gathering(index_.get());
        gatherReplacement({&schema(), before, number}, {&schema(), record, number});
        RecordChange change;
        change.add(number, before, record);
        apply(
            change, count, [&] { writeAfter(records_, change); }, [&] { writeBefore(records_, change); });
    }
    syncUnjournaled();
}

void Table::erase(RecordNumber number, std::span<const char> shown) {
    requireWhole(shown);
    std::vector<char> deleted(shown.begin(), shown.end());
    deleted[0] = '*';
    overwrite(number, shown, deleted);
}

bool Table::isHeldHere(RecordNumber first, RecordNumber last) const {
    return std::any_of(recordLocks_.begin(), recordLocks_.end(),
                       [&](const auto& held) { return first <= held.first && held.first <= last; });
}

// Looking for the successor of a key in a unique tag reads stored records: it must not meet one whose change
// is only gathered yet.
bool Table::changesOneByOne() const {
    return index_ && std::any_of(index_->tags().begin(), index_->tags().end(),
                                 [](const Tag& tag) { return tag.definition.unique; });
}

RecordNumber Table::amend(RecordNumber first, RecordNumber most, const Amendment& amendment) {
    requireWritable();
    const StructureLock lock(structureFile(), structureHolders_, LockKind::Exclusive);
    renewTornViews();
    mend(health());
    const std::uint32_t count = records_.recordCount();
    if (first == 0 || most == 0 || first > count) {
        return 0;
    }
    most = std::min(most, static_cast<RecordNumber>(largestChange / 2 / schema().recordLength));
    const RecordNumber last = most <= count - first ? first + most - 1 : count;
    NeighbourLocks locks(records_.file(), first, last, !isHeldHere(first, last));
    const RecordNumber step = changesOneByOne() ? 1 : last - first + 1;
    for (RecordNumber begin = first; begin <= last; begin += step) {
        amendLocked(begin, begin + step - 1, amendment, [&](RecordNumber number) {
            return !recordLocks_.contains(number) && locks.take(number);
        });
    }
    return last < count ? last + 1 : 0;
}

void Table::amendLocked(RecordNumber first, RecordNumber last, const Amendment& amendment,
                        const std::function<bool(RecordNumber)>& take) {
    RecordChange change;
    const Gathering gathering(index_.get());
    std::vector<char> stored, changed;
    for (RecordNumber number = first; number <= last; ++number) {
        if (!take(number)) {
            continue;
        }
        const std::span<const char> bytes = records_.record(number).bytes;
        stored.assign(bytes.begin(), bytes.end());
        const RecordView record{&schema(), stored, number};
        changed = stored;
        if (!record.isDeleted()) {
            amendment(record, changed);
        }
        if (changed != stored) {
            gatherReplacement(record, {&schema(), changed, number});
            change.add(number, stored, changed);
        }
    }
    if (change.empty()) {
        return;
    }
    apply(
        change, records_.recordCount(), [&] { writeAfter(records_, change); },
        [&] { writeBefore(records_, change); });
    syncUnjournaled();
}

} // namespace dbase
