// Fixture of the tests that put rows back.
#pragma once

#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "dbase/dataset/dataset.h"
#include "dbase/dbf/codepage.h"
#include "dbase/support/StoredTable.h"
#include "loading/batch_changes.h"
#include "loading/undo.h"
#include "loading/undo_reader.h"
#include "support/TableTest.h"

namespace loading {

using ambrel::test::Row;
using dbase::test::storedRecord;
using dbase::test::withValue;

using Keys = std::vector<std::string>;
inline const Keys noKey, code{"CODIGO"};

/// A table of four customers whose rows one test changes and puts back.
class Undo : public ambrel::test::TableTest {
protected:
    Undo() {
        file = createTable(definition("CLIENTES"), {{"A1", "Ana", "C/ MAIOR", "28013"},
                                                    {"A2", "Blas", "C/ SOL", "28013"},
                                                    {"A3", "Clara", "C/ LUNA", "28014"},
                                                    {"A4", "Daniel", "C/ PEÑA", ""}});
        undoFile = folder / "CLIENTES.deshacer";
    }

    static dbase::TableDefinition definition(const std::string& name) {
        return ambrel::test::defineTable(name, {"CODIGO C4", "NOMBRE C10", "VIA C20", "CP C5"},
                                         {"CODIGO", "CP"});
    }

    /// What one test changes through one batch, in its order.
    struct Batch {
        explicit Batch(const std::string& tableFile, const std::string& undoFile, const Keys& key = noKey)
            : table(dbase::Table::open(tableFile)), undo(undoFile, tableFile, "la prueba"),
              changes(table, undo, key, [this](dbase::RecordNumber number, ChangeOutcome outcome) {
                  outcomes += std::to_string(number) + ".DLC"[static_cast<std::size_t>(outcome) + 1];
              }) {}

        Batch& set(dbase::RecordNumber number, const std::string& column, const std::string& value) {
            const auto row = storedRecord(*table, number);
            changes.change(number, row, withValue(table->schema(), row, column, ambrel::test::ansi(value)));
            return *this;
        }
        Batch& add(const std::vector<std::string>& values) {
            changes.add(dbase::test::makeRecord(table->schema(), values));
            return *this;
        }
        Batch& erase(dbase::RecordNumber number) {
            changes.erase(number, storedRecord(*table, number));
            return *this;
        }
        void finish() { changes.finish(); }

        std::shared_ptr<dbase::Table> table;
        UndoWriter undo;
        std::string outcomes; // "1D2L": record 1 done, 2 locked
        BatchChanges changes;
    };

    /// Another station's edit.
    static void edit(const std::string& table, const std::string& codeOfRow, const std::string& column,
                     const std::string& value) {
        dbase::Dataset station("DB", table, "CODIGO");
        station.open();
        ASSERT_TRUE(station.seek({{"CODIGO", codeOfRow}}, dbase::SeekMode::Exact));
        station.edit();
        station.field(column).setText(value);
        station.post();
    }
    static void remove(const std::string& table, const std::string& codeOfRow) {
        dbase::Dataset station("DB", table, "CODIGO");
        station.open();
        ASSERT_TRUE(station.seek({{"CODIGO", codeOfRow}}, dbase::SeekMode::Exact));
        station.erase();
    }
    static void append(const std::string& table, const Row& values) {
        dbase::Dataset station("DB", table);
        station.open();
        station.append();
        for (std::size_t i = 0; i < values.size(); ++i) {
            station.fields().at(i)->setText(ambrel::test::ansi(values[i]));
        }
        station.post();
    }

    /// The live rows of a table in the order of their codes.
    static std::string rows(const std::string& table = "CLIENTES") {
        dbase::Dataset dataset("DB", table, "CODIGO");
        dataset.open();
        std::string all;
        for (bool on = !dataset.isEmpty(); on; on = dataset.next()) {
            for (const dbase::Field* field : dataset.fields()) {
                all += (field == dataset.fields().front() ? "" : "|") +
                       dbase::CodePage::windows1252().toUtf8(field->text());
            }
            all += '\n';
        }
        return all;
    }

    /// Puts back; returns what was left alone, and the totals at the end.
    std::string undoAll(const std::string& where = {}) const {
        std::string result;
        const UndoReader reader(undoFile);
        const UndoTotals totals = undo(reader, where, [&](const LeftAlone& left) {
            result += std::to_string(left.number) + ' ' + left.column + ": " + left.before + " / " +
                      left.now + " (" + left.reason + ")\n";
        });
        return result + std::to_string(totals.putBack) + " put back, " + std::to_string(totals.asBefore) +
               " as before, " + std::to_string(totals.leftAlone) + " left";
    }
    std::string refusal(const std::string& where = {}) const {
        try {
            return "undone: " + undoAll(where);
        } catch (const std::exception& error) {
            return error.what();
        }
    }
    std::string text() const {
        std::ostringstream all;
        all << std::ifstream(undoFile, std::ios::binary).rdbuf();
        return all.str();
    }
    void writeText(const std::string& all) const {
        std::ofstream(undoFile, std::ios::binary | std::ios::trunc) << all;
    }

    std::string file, undoFile;
};

} // namespace loading
