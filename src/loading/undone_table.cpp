// Puts the rows of one table back.
#include "loading/undone_table.h"

#include <algorithm>

#include "dbase/dbf/codepage.h"
#include "dbase/system/error.h"
#include "dbase/system/paths.h"
#include "dbase/system/trim.h"
#include "loading/failure.h"

namespace loading {

namespace {

bool hasColumnsOf(const dbase::Schema& now, const dbase::Schema& then) {
    return now.languageDriver == then.languageDriver && now.recordLength == then.recordLength &&
           std::ranges::equal(now.columns, then.columns, [](const auto& one, const auto& other) {
               return one.name == other.name && one.type == other.type && one.width == other.width &&
                      one.decimals == other.decimals && one.offset == other.offset;
           });
}

/// The values of some columns in the row of an entry, before it if it was there.
std::string valuesOf(const dbase::Schema& schema, std::span<const std::size_t> columns,
                     const UndoEntry& entry) {
    const std::vector<char>& row = entry.before.empty() ? entry.after : entry.before;
    std::string values;
    for (const std::size_t position : columns) {
        const dbase::Column& column = schema.columns[position];
        values += dbase::withoutTrailingBlanks({row.data() + column.offset, column.width});
        values += '\t';
    }
    return values;
}

constexpr const char* isLocked = "otro usuario la está modificando; espere y repita la orden";
constexpr const char* isChanged = "se ha cambiado desde entonces";
constexpr const char* isGone = "la fila ya no está";
constexpr const char* hasTwins = "hay varias filas que pueden ser ésta";

} // namespace

UndoneTable::UndoneTable(const UndoTable& then, const std::string& path, UndoTotals& totals,
                         Observer observer)
    : table_(dbase::Table::open(path)), key_(then.key), tie_(then.tie), isOfWholeRows_(then.isOfWholeRows),
      totals_(totals), observer_(std::move(observer)), posts_(table_) {
    if (!hasColumnsOf(table_->schema(), then.schema)) {
        throw Failure(path + ": no tiene las columnas de la tabla que se cambió; no se deshace nada");
    }
    if (table_->isReadOnly()) {
        throw dbase::Error(dbase::ErrorCode::ReadOnly, table_->path(),
                           "sólo se puede leer: " + table_->readOnlyReason());
    }
}

void UndoneTable::undo(const UndoEntry& entry) {
    if (posts_.isFull() || posts_.contains(entry.number)) {
        finish();
    }
    switch (entry.kind) {
    case UndoKind::Change:
        return undoChange(entry);
    case UndoKind::Addition:
        return undoAddition(entry);
    case UndoKind::Deletion:
        return undoDeletion(entry);
    case UndoKind::Unmade:
        return;
    }
}

bool UndoneTable::staysWith(const UndoneTable& companion, const UndoEntry& entry) {
    if (!companion.left_.contains(valuesOf(table_->schema(), key_, entry))) {
        return false;
    }
    leave(entry, {}, entry.number,
          "su fila en " + dbase::baseName(companion.table_->path()) + " no se ha tocado");
    return true;
}

void UndoneTable::undoChange(const UndoEntry& entry) {
    const Row row = liveRowAt(entry.number);
    if (!row.empty() && agree(row, entry.after)) {
        post(entry, {entry.number, row}, putBackInto(entry, row));
    } else if (!row.empty() && agree(row, entry.before)) {
        noteAsBefore(entry.number);
    } else if (isOfWholeRows_) {
        undoMovedRow(entry);
    } else {
        undoMovedChange(entry);
    }
}

/// As below, of a table of whole rows: a row in which anything else has changed stays.
void UndoneTable::undoMovedRow(const UndoEntry& entry) {
    std::vector<Found> found = alike(entry.after);
    if (found.size() == 1 && agree(found.front().row, entry.after)) {
        return post(entry, found.front(), entry.before);
    }
    if (key_.empty() || !hasSameKey(entry.before, entry.after)) {
        std::ranges::move(alike(entry.before), std::back_inserter(found));
    }
    const auto asBefore =
        std::ranges::find_if(found, [&](const Found& one) { return agree(one.row, entry.before); });
    if (asBefore != found.end()) {
        noteAsBefore(asBefore->number);
    } else if (found.empty()) {
        leaveUnfound(entry);
    } else if (found.size() > 1) {
        leave(entry, {}, entry.number, hasTwins);
    } else {
        leave(entry, found.front().row, found.front().number, isChanged);
    }
}

/// A row that is not at its number as it was left: changed since, or moved by compacting the table.
void UndoneTable::undoMovedChange(const UndoEntry& entry) {
    const std::vector<Found> left = alike(entry.after);
    if (key_.empty() || !hasSameKey(entry.before, entry.after)) {
        if (const std::vector<Found> asBefore = alike(entry.before); !asBefore.empty()) {
            return noteAsBefore(asBefore.front().number);
        }
    }
    if (left.size() > 1) {
        return leave(entry, {}, entry.number, hasTwins);
    }
    if (left.empty()) {
        return leaveUnfound(entry);
    }
    const Found& found = left.front();
    if (agreesWhereChanged(entry, found.row, entry.after)) {
        post(entry, found, putBackInto(entry, found.row));
    } else if (agreesWhereChanged(entry, found.row, entry.before)) {
        noteAsBefore(found.number);
    } else {
        leave(entry, found.row, found.number, isChanged);
    }
}

void UndoneTable::undoAddition(const UndoEntry& entry) {
    std::vector<Found> found;
    if (Row row = rowAt(entry.number); !row.empty() && hasSameKey(row, entry.after)) {
        if (row.front() != dbase::deletedMark) {
            found.push_back({entry.number, std::move(row)});
        }
    } else {
        found = alike(entry.after);
        // Before the change, another row may have been what the added one is.
        std::erase_if(found, [&](const Found& one) { return isAsBefore(one.number); });
    }
    if (found.empty()) {
        ++totals_.asBefore;
    } else if (found.size() > 1) {
        leave(entry, {}, entry.number, hasTwins);
    } else if (!agree(found.front().row, entry.after)) {
        leave(entry, found.front().row, found.front().number, isChanged);
    } else {
        Row deleted = found.front().row;
        deleted.front() = dbase::deletedMark;
        post(entry, found.front(), std::move(deleted));
    }
}

void UndoneTable::undoDeletion(const UndoEntry& entry) {
    finish(); // a row with its key may be about to be deleted
    const std::vector<Found> found = alike(entry.before);
    if (!found.empty()) {
        const Found& other = found.front();
        if (found.size() == 1 && agree(other.row, entry.before)) {
            noteAsBefore(other.number);
        } else {
            leave(entry, other.row, other.number, "otra fila tiene ya su clave");
        }
        return;
    }
    const Row stored = rowAt(entry.number);
    if (!stored.empty() && stored.front() == dbase::deletedMark && agree(stored, entry.before)) {
        recall(entry, stored);
    } else {
        addAgain(entry);
    }
}

void UndoneTable::recall(const UndoEntry& entry, const Row& stored) {
    if (!table_->tryLockRecord(entry.number, this)) {
        return leave(entry, {}, entry.number, isLocked);
    }
    Row live = stored;
    live.front() = dbase::liveMark;
    try {
        table_->overwrite(entry.number, stored, live, dbase::Durability::Disk);
    } catch (...) {
        table_->unlockRecord(entry.number, this);
        throw;
    }
    table_->unlockRecord(entry.number, this);
    index_->put(entry.number, live);
    ++totals_.putBack;
    keep(entry.number);
}

void UndoneTable::addAgain(const UndoEntry& entry) {
    const dbase::RecordNumber number = table_->append(entry.before, dbase::Durability::Disk);
    index_->put(number, entry.before);
    ++totals_.putBack;
    keep(number);
}

void UndoneTable::post(const UndoEntry& entry, const Found& found, Row after) {
    posts_.add(found.number, found.row, after);
    pending_.insert_or_assign(found.number, Pending{entry, std::move(after)});
}

void UndoneTable::finish() {
    posts_.post([&](dbase::RecordNumber number, ChangeOutcome outcome) {
        const auto done = pending_.extract(number);
        const auto& [entry, after] = done.mapped();
        if (outcome != ChangeOutcome::Done) {
            leave(entry, rowAt(number), number, outcome == ChangeOutcome::Locked ? isLocked : isChanged);
            return;
        }
        ++totals_.putBack;
        if (after.front() == dbase::deletedMark) {
            return;
        }
        keep(number);
        if (index_) {
            index_->put(number, after);
        }
    });
}

void UndoneTable::noteAsBefore(dbase::RecordNumber number) {
    ++totals_.asBefore;
    keep(number);
}

void UndoneTable::keep(dbase::RecordNumber number) {
    if (isAsBefore_.size() <= number) {
        isAsBefore_.resize(number + 1);
    }
    isAsBefore_[number] = true;
}

/// The stored record, deleted or not.
UndoneTable::Row UndoneTable::rowAt(dbase::RecordNumber number) const {
    return table_->read([&] {
        Row row;
        if (number != 0 && number <= table_->records().recordCount()) {
            const std::span<const char> bytes = table_->records().record(number).bytes;
            row.assign(bytes.begin(), bytes.end());
        }
        return row;
    });
}

UndoneTable::Row UndoneTable::liveRowAt(dbase::RecordNumber number) const {
    Row row = rowAt(number);
    return !row.empty() && row.front() == dbase::deletedMark ? Row() : row;
}

/// The live rows that have the key of a row; without a key, all its values.
std::vector<UndoneTable::Found> UndoneTable::alike(std::span<const char> row) {
    if (!index_) {
        finish();
        index_.emplace(*table_, key_);
    }
    std::vector<Found> found;
    for (const dbase::RecordNumber number : index_->find(row)) {
        if (posts_.contains(number)) {
            finish();
        }
        Row stored = liveRowAt(number);
        if (!stored.empty() && (key_.empty() ? agree(stored, row) : hasSameKey(stored, row))) {
            found.push_back({number, std::move(stored)});
        }
    }
    return found;
}

bool UndoneTable::hasSameKey(std::span<const char> one, std::span<const char> other) const {
    return std::ranges::all_of(
        key_, [&](std::size_t column) { return agree(table_->schema().columns[column], one, other); });
}

bool UndoneTable::agreesWhereChanged(const UndoEntry& entry, std::span<const char> row,
                                     std::span<const char> wanted) const {
    return std::ranges::all_of(table_->schema().columns, [&](const dbase::Column& column) {
        return agree(column, entry.before, entry.after) || agree(column, row, wanted);
    });
}

/// The row with the old values of the columns that the entry changed.
UndoneTable::Row UndoneTable::putBackInto(const UndoEntry& entry, const Row& row) const {
    Row result = row;
    for (const dbase::Column& column : table_->schema().columns) {
        if (!agree(column, entry.before, entry.after)) {
            std::copy_n(entry.before.begin() + column.offset, column.width, result.begin() + column.offset);
        }
    }
    return result;
}

std::string UndoneTable::text(const dbase::Column& column, std::span<const char> row) const {
    return dbase::CodePage::ofDriver(table_->schema().languageDriver)
        .toUtf8(dbase::withoutTrailingBlanks({row.data() + column.offset, column.width}));
}

/// Says what can be known of a row that is not found: without a key, the one at its number may be it.
void UndoneTable::leaveUnfound(const UndoEntry& entry) {
    const Row row = liveRowAt(entry.number);
    if (!key_.empty() || row.empty()) {
        return leave(entry, {}, entry.number, isGone);
    }
    std::string others;
    for (const dbase::Column& column : table_->schema().columns) {
        if (agree(column, entry.before, entry.after) && !agree(column, row, entry.after)) {
            others += (others.empty() ? "" : ", ") + column.name;
        }
    }
    if (others.empty()) {
        leave(entry, row, entry.number, isChanged);
    } else if (agreesWhereChanged(entry, row, entry.after)) {
        leave(entry, row, entry.number, "puede ser otra fila: han cambiado " + others);
    } else {
        leave(entry, {}, entry.number, "la fila ha cambiado o ya no está en ese registro");
    }
}

/// Lists the values that are not as they were before the entry, or else the row.
void UndoneTable::leave(const UndoEntry& entry, const Row& now, dbase::RecordNumber number,
                        const std::string& reason) {
    ++totals_.leftAlone;
    if (!tie_.empty() && !now.empty()) { // what is gone contradicts nothing
        left_.insert(valuesOf(table_->schema(), tie_, entry));
    }
    const dbase::CodePage& page = dbase::CodePage::ofDriver(table_->schema().languageDriver);
    LeftAlone left{
        .table = table_->path(), .number = number, .column = {}, .before = {}, .now = {}, .reason = reason};
    bool isListed = false;
    for (const dbase::Column& column : table_->schema().columns) {
        const std::span<const char> wanted = entry.before.empty() ? entry.after : entry.before;
        const bool concerns = entry.kind != UndoKind::Change || !agree(column, entry.before, entry.after);
        if (now.empty() || !concerns || agree(column, now, wanted)) {
            continue;
        }
        left.column = page.toUtf8(column.name);
        left.before = text(column, wanted);
        left.now = text(column, now);
        observer_(left);
        isListed = true;
    }
    if (!isListed) {
        observer_(left);
    }
}

} // namespace loading
