// Goes through the records and posts what is mended.
#include "directory/audit/TableRepair.h"

#include <algorithm>
#include <map>
#include <memory>
#include <set>
#include <utility>
#include <vector>

#include "dbase/dataset/dataset.h"
#include "dbase/dbf/codec.h"
#include "dbase/system/databases.h"
#include "dbase/table/table.h"
#include "directory/audit/AuditedRows.h"
#include "directory/audit/RowMending.h"
#include "loading/ansi_text.h"
#include "loading/batch_changes.h"
#include "loading/undo_file.h"

namespace ambrel::directory {

namespace {

using loading::utf8FromAnsi;
using Record = std::vector<char>;
/// Called with rows that others hold or have changed.
using LeftAlone = std::function<void(dbase::RecordNumber)>;

/// A mended copy of a record, or nothing if a column no longer holds what was mended.
Record mended(const dbase::Schema& schema, const Record& record, const std::vector<ColumnChange>& changes) {
    Record result = record;
    for (const ColumnChange& change : changes) {
        const dbase::Column& column = schema.columns.at(schema.find(change.column).value());
        const std::span<char> raw = std::span(result).subspan(column.offset, column.width);
        const std::string_view text(raw.data(), raw.size());
        if (column.type == dbase::ColumnType::Numeric) {
            if (dbase::decodeInteger(text).value_or(0) != std::stoi(change.from) ||
                !dbase::encodeInteger(raw, std::stoi(change.to))) {
                return {};
            }
        } else if (dbase::decodeText(text) != change.from) {
            return {};
        } else {
            dbase::encodeText(raw, change.to);
        }
    }
    return result;
}

/// The repair of one table.
class TableRun {
public:
    TableRun(const RepairOptions& options, AuditedTable name, loading::UndoWriter* undo,
             const RepairObserver& observer, LeftAlone leftAlone)
        : name_(name), observer_(observer), leftAlone_(std::move(leftAlone)) {
        if (undo != nullptr) {
            table_ = dbase::Table::open(
                dbase::findTableFile(dbase::databaseFolder(options.database), tableName(name)).value());
            changes_ = std::make_unique<loading::BatchChanges>(
                table_, *undo, loading::keyColumnsOf(*table_),
                [this](dbase::RecordNumber record, loading::ChangeOutcome outcome) {
                    decided(record, outcome);
                });
        }
    }

    void take(dbase::RecordNumber record, const std::string& key, const MendedRow& row) {
        if (row.changes.empty()) {
            return;
        }
        RepairedRow repaired{.table = name_, .record = record, .key = utf8FromAnsi(key), .kinds = row.kinds};
        for (const ColumnChange& change : row.changes) {
            repaired.change +=
                (repaired.change.empty() ? "" : ", ") + change.column + '=' + utf8FromAnsi(change.to);
        }
        if (!changes_) {
            observer_(repaired, RepairOutcome::Planned);
            return;
        }
        const Record shown = read(record);
        const Record after = shown.empty() ? Record() : mended(table_->schema(), shown, row.changes);
        if (after.empty()) {
            leave(repaired, RepairOutcome::Changed);
            return;
        }
        pending_.emplace(record, std::move(repaired));
        changes_->change(record, shown, after);
    }

    void finish() {
        if (changes_) {
            changes_->finish();
        }
    }

private:
    /// Empty if the record is deleted or gone.
    [[nodiscard]] Record read(dbase::RecordNumber number) {
        return table_->read([&] {
            if (number > table_->records().recordCount()) {
                return Record();
            }
            const dbase::RecordView record = table_->records().record(number);
            return record.isDeleted() ? Record() : Record(record.bytes.begin(), record.bytes.end());
        });
    }

    void leave(const RepairedRow& row, RepairOutcome outcome) {
        leftAlone_(row.record);
        observer_(row, outcome);
    }

    void decided(dbase::RecordNumber record, loading::ChangeOutcome outcome) {
        const auto row = pending_.extract(record);
        if (outcome == loading::ChangeOutcome::Done) {
            observer_(row.mapped(), RepairOutcome::Done);
        } else {
            leave(row.mapped(),
                  outcome == loading::ChangeOutcome::Locked ? RepairOutcome::Locked : RepairOutcome::Changed);
        }
    }

    AuditedTable name_;
    const RepairObserver& observer_;
    LeftAlone leftAlone_;
    std::shared_ptr<dbase::Table> table_;
    std::unique_ptr<loading::BatchChanges> changes_; // null in a dry run
    std::map<dbase::RecordNumber, RepairedRow> pending_;
};

std::size_t columnWidth(const std::string& database, AuditedTable name, const std::string& column) {
    dbase::Dataset table(database, std::string(tableName(name)));
    table.open();
    const dbase::Schema& schema = table.openTable().schema();
    const auto place = schema.find(column);
    return place ? schema.columns.at(*place).width : 0;
}

/// The repair of both tables. What repeats the name of a municipality comes before the name itself, and the
/// name stays if any of it could not be changed: as long as it is as it was, the next repair finds the rest.
class BothTables {
public:
    BothTables(const RepairOptions& options, loading::UndoWriter* undo, const RepairObserver& observer)
        : options_(options), undo_(undo), observer_(observer), book_(readPlaces(options.database)),
          rows_(recordCount(options.database, AuditedTable::Streets) +
                4 * recordCount(options.database, AuditedTable::Municipalities)) {}

    void run() {
        const bool hasMunicipalities = options_.only != AuditedTable::Streets;
        if (hasMunicipalities) {
            forEachMunicipality(options_.database,
                                [&](const MunicipalityRow& row) { names_.note(row, book_, options_.kinds); });
        }
        if (options_.only != AuditedTable::Municipalities || !names_.isEmpty()) {
            mendStreets();
        }
        if (hasMunicipalities) {
            mendMunicipalities();
        }
    }

private:
    using Name = std::pair<PlaceNumber, std::string>;

    TableRun makeRun(AuditedTable table) {
        copies_.clear();
        return {options_, table, undo_, observer_, [this](dbase::RecordNumber record) {
                    if (const auto copy = copies_.find(record); copy != copies_.end()) {
                        stuck_.insert(copy->second);
                    }
                }};
    }

    void mendStreets() {
        const bool isWhole = options_.only != AuditedTable::Municipalities; // or only the copies of names
        const std::size_t width = columnWidth(options_.database, AuditedTable::Streets, "MUNICIPI");
        TableRun run = makeRun(AuditedTable::Streets);
        forEachStreet(options_.database, {}, [&](const StreetRow& row) {
            MendedRow mended = isWhole ? mendStreet(row, book_, options_.kinds) : MendedRow();
            if (!names_.isEmpty() && !row.municipality.empty()) {
                follow(mended, "MUNICIPI", row.municipality, {book_.placeOf(row), width, row.record});
            }
            run.take(row.record, row.key, mended);
            step();
        });
        run.finish();
    }

    void mendMunicipalities() {
        const std::size_t width = columnWidth(options_.database, AuditedTable::Municipalities, "NOM_MUNICI");
        TableRun run = makeRun(AuditedTable::Municipalities);
        enum class Turn { NameStays, EntityRenamed, MunicipalityRenamed };
        for (const Turn turn : {Turn::NameStays, Turn::EntityRenamed, Turn::MunicipalityRenamed}) {
            forEachMunicipality(options_.database, [&](const MunicipalityRow& row) {
                step();
                MendedRow mended = mendMunicipality(row, book_, options_.kinds);
                const auto name = std::ranges::find(mended.changes, "NOMBRE", &ColumnChange::column);
                const bool isRenamed = name != mended.changes.end();
                if (turn != (!isRenamed     ? Turn::NameStays
                             : row.isEntity ? Turn::EntityRenamed
                                            : Turn::MunicipalityRenamed)) {
                    return;
                }
                const auto place = book_.placeOfIne(row.ineCode);
                if (isRenamed && place && stuck_.contains({*place, row.name})) {
                    leaveName(row, mended, *name);
                    mended.changes.erase(name);
                }
                if (!row.municipality.empty()) {
                    follow(mended, "NOM_MUNICI", row.municipality, {place, width, row.record});
                }
                run.take(row.record, row.ineCode + ' ' + row.postalCode, mended);
            });
            run.finish();
        }
    }

    void step() {
        constexpr std::uint64_t interval = 1024;
        if (++done_ % interval == 0 && options_.progress) {
            options_.progress(std::min(done_, rows_), rows_);
        }
    }

    struct CopyPlace {
        std::optional<PlaceNumber> place;
        std::size_t width;
        dbase::RecordNumber record;
    };

    /// Adds the repair of a name that a column repeats.
    void follow(MendedRow& mended, const char* column, const std::string& copy, const CopyPlace& where) {
        const auto repair = where.place ? names_.of(*where.place, copy, where.width) : std::nullopt;
        if (repair && repair->to != copy && !stuck_.contains({*where.place, repair->from})) {
            mended.changes.push_back({column, copy, repair->to});
            mended.kinds.insert(repair->kinds.begin(), repair->kinds.end());
            if (undo_ != nullptr) {
                copies_.emplace(where.record, Name(*where.place, repair->from));
            }
        }
    }

    void leaveName(const MunicipalityRow& row, const MendedRow& mended, const ColumnChange& name) const {
        observer_({.table = AuditedTable::Municipalities,
                   .record = row.record,
                   .key = utf8FromAnsi(row.ineCode + ' ' + row.postalCode),
                   .kinds = mended.kinds,
                   .change = name.column + '=' + utf8FromAnsi(name.to)},
                  RepairOutcome::CopyLeft);
    }

    const RepairOptions& options_;
    loading::UndoWriter* undo_;
    const RepairObserver& observer_;
    PlaceBook book_;
    std::uint64_t rows_, done_ = 0; // those of MUNICIPI are read four times
    NameRepairs names_;
    std::map<dbase::RecordNumber, Name> copies_; // of the table at hand, whose names follow
    std::set<Name> stuck_;                       // names of which a copy was left alone
};

} // namespace

void planRepairs(const RepairOptions& options, const RepairObserver& observer) {
    BothTables(options, nullptr, observer).run();
}

void repairTables(const RepairOptions& options, const RepairUndo& undo, const RepairObserver& observer,
                  std::string& undoFile) {
    const std::string folder = dbase::databaseFolder(options.database);
    const auto table = dbase::findTableFile(folder, tableName(AuditedTable::Streets));
    const auto writer =
        loading::createUndoFile(undo.file, folder + "/revisar", table.value_or(folder), undo.order);
    const auto nameFile = [&] { undoFile = writer->isEmpty() ? std::string() : writer->path(); };
    try {
        BothTables(options, writer.get(), observer).run();
    } catch (...) {
        nameFile();
        throw;
    }
    nameFile();
}

} // namespace ambrel::directory
