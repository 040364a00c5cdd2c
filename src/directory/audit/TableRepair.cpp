// Goes through the records and posts what is mended.
#include "directory/audit/TableRepair.h"

#include <algorithm>
#include <map>
#include <memory>
#include <vector>

#include "dbase/dbf/codec.h"
#include "dbase/system/databases.h"
#include "dbase/table/table.h"
#include "directory/audit/Audit.h"
#include "directory/audit/RowMending.h"
#include "loading/ansi_text.h"
#include "loading/batch_changes.h"

namespace ambrel::directory {

namespace {

using loading::utf8FromAnsi;
using Record = std::vector<char>;

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
             const RepairObserver& observer)
        : name_(name), observer_(observer) {
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
            observer_(repaired, RepairOutcome::Changed);
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

    void decided(dbase::RecordNumber record, loading::ChangeOutcome outcome) {
        const auto found = pending_.find(record);
        observer_(found->second, outcome == loading::ChangeOutcome::Done     ? RepairOutcome::Done
                                 : outcome == loading::ChangeOutcome::Locked ? RepairOutcome::Locked
                                                                             : RepairOutcome::Changed);
        pending_.erase(found);
    }

    AuditedTable name_;
    const RepairObserver& observer_;
    std::shared_ptr<dbase::Table> table_;
    std::unique_ptr<loading::BatchChanges> changes_; // null in a dry run
    std::map<dbase::RecordNumber, RepairedRow> pending_;
};

} // namespace

void repairTables(const RepairOptions& options, loading::UndoWriter* undo, const RepairObserver& observer) {
    const PlaceBook book = readPlaces(options.database);
    if (options.only != AuditedTable::Streets) {
        TableRun run(options, AuditedTable::Municipalities, undo, observer);
        forEachMunicipality(options.database, [&](const MunicipalityRow& row) {
            run.take(row.record, row.ineCode + ' ' + row.postalCode,
                     mendMunicipality(row, book, options.kinds));
        });
        run.finish();
    }
    if (options.only != AuditedTable::Municipalities) {
        TableRun run(options, AuditedTable::Streets, undo, observer);
        forEachStreet(options.database, {}, [&](const StreetRow& row) {
            run.take(row.record, row.key, mendStreet(row, book, options.kinds));
        });
        run.finish();
    }
}

} // namespace ambrel::directory
