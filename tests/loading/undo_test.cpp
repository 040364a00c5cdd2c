// Changes of many rows, and putting them back.
#include "loading/undo.h"

#include <filesystem>
#include <fstream>
#include <sstream>

#include "dbase/dataset/dataset.h"
#include "dbase/dbf/codepage.h"
#include "dbase/support/OtherUser.h"
#include "dbase/support/StoredTable.h"
#include "dbase/system/error.h"
#include "dbase/table/compaction.h"
#include "loading/batch_changes.h"
#include "loading/failure.h"
#include "loading/undo_reader.h"
#include "support/FileSizeLimit.h"
#include "support/TableTest.h"

namespace loading {
namespace {

using ambrel::test::Row;
using dbase::test::storedRecord;
using dbase::test::withValue;

using Keys = std::vector<std::string>;
const Keys noKey, code{"CODIGO"};

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

TEST_F(Undo, PutsBackEveryRowAsItWas) {
    const std::string before = rows();
    Batch batch(file, undoFile);
    batch.set(1, "VIA", "C/ MAYOR").set(4, "VIA", "C/ PEÑÓN").finish();
    batch.set(4, "CP", "28001").finish();
    EXPECT_NE(rows().find("A1|Ana|C/ MAYOR|28013\n"), std::string::npos) << rows();
    EXPECT_NE(rows().find("A4|Daniel|C/ PEÑÓN|28001\n"), std::string::npos) << rows();
    EXPECT_EQ(undoAll(), "3 put back, 0 as before, 0 left");
    EXPECT_EQ(rows(), before);
}

TEST_F(Undo, TwiceIsHarmless) {
    Batch batch(file, undoFile);
    batch.set(1, "VIA", "C/ MAYOR").set(2, "CP", "28012").finish();
    (void)undoAll();
    const std::string undone = rows();
    EXPECT_EQ(undoAll(), "0 put back, 2 as before, 0 left");
    EXPECT_EQ(rows(), undone);
}

TEST_F(Undo, LeavesWhatSomebodyHasChangedSinceAndListsIt) {
    Batch batch(file, undoFile);
    batch.set(1, "VIA", "C/ MAYOR").set(2, "CP", "28012").finish();
    edit("CLIENTES", "A1", "VIA", "AV DEL PARQUE");
    EXPECT_EQ(undoAll(), "1 VIA: C/ MAIOR / AV DEL PARQUE (se ha cambiado desde entonces)\n"
                         "1 put back, 0 as before, 1 left");
    EXPECT_NE(rows().find("A1|Ana|AV DEL PARQUE|28013\n"), std::string::npos) << rows();
    EXPECT_NE(rows().find("A2|Blas|C/ SOL|28013\n"), std::string::npos) << rows();
}

TEST_F(Undo, LeavesAWholeAddressOfWhichOneColumnWasChangedSince) {
    const auto row = storedRecord(*dbase::Table::open(file), 1);
    {
        Batch batch(file, undoFile, code);
        auto changed = withValue(batch.table->schema(), row, "VIA", "C/ MAYOR");
        changed = withValue(batch.table->schema(), changed, "CP", "28012");
        batch.changes.change(1, row, changed);
        batch.finish();
    }
    edit("CLIENTES", "A1", "CP", "28005");
    EXPECT_EQ(undoAll(), "1 VIA: C/ MAIOR / C/ MAYOR (se ha cambiado desde entonces)\n"
                         "1 CP: 28013 / 28005 (se ha cambiado desde entonces)\n"
                         "0 put back, 0 as before, 1 left");
}

TEST_F(Undo, WithAKeyKeepsWhatWasChangedInOtherColumns) {
    Batch batch(file, undoFile, code);
    batch.set(1, "VIA", "C/ MAYOR").finish();
    edit("CLIENTES", "A1", "NOMBRE", "Anabel");
    EXPECT_EQ(undoAll(), "1 put back, 0 as before, 0 left");
    EXPECT_NE(rows().find("A1|Anabel|C/ MAIOR|28013\n"), std::string::npos) << rows();
}

TEST_F(Undo, OfATableOfWholeRowsLeavesThoseInWhichAnythingHasChanged) {
    {
        const auto table = dbase::Table::open(file);
        UndoWriter writer(undoFile, file, "la prueba");
        const std::size_t position = writer.addTableOfWholeRows(file, table->schema(), code);
        for (const dbase::RecordNumber number : {2U, 3U, 4U}) {
            const auto row = storedRecord(*table, number);
            writer.change(position, number, row, withValue(table->schema(), row, "VIA", "C/ MAYOR"));
        }
        writer.sync();
    }
    for (const char* const changed : {"A2", "A3", "A4"}) {
        edit("CLIENTES", changed, "VIA", "C/ MAYOR");
    }
    edit("CLIENTES", "A2", "NOMBRE", "Blasa");
    remove("CLIENTES", "A1");
    remove("CLIENTES", "A4");
    EXPECT_EQ(dbase::compactTable(file).dropped, 2U);
    EXPECT_EQ(undoAll(),
              "4 :  /  (la fila ya no está)\n1 VIA: C/ SOL / C/ MAYOR (se ha cambiado desde entonces)\n"
              "1 put back, 0 as before, 2 left");
    EXPECT_EQ(rows(), "A2|Blasa|C/ MAYOR|28013\nA3|Clara|C/ LUNA|28014\n");
}

TEST_F(Undo, WithoutAKeyLeavesARowThatMayBeAnotherOne) {
    Batch batch(file, undoFile);
    batch.set(1, "VIA", "C/ MAYOR").finish();
    edit("CLIENTES", "A1", "NOMBRE", "Anabel");
    EXPECT_EQ(undoAll(), "1 VIA: C/ MAIOR / C/ MAYOR (puede ser otra fila: han cambiado NOMBRE)\n"
                         "0 put back, 0 as before, 1 left");
}

TEST_F(Undo, FindsRowsThatCompactingTheTableHasMoved) {
    {
        Batch batch(file, undoFile);
        batch.set(3, "VIA", "C/ LUNAR").set(4, "CP", "28001").finish();
    }
    remove("CLIENTES", "A1");
    EXPECT_EQ(dbase::compactTable(file).dropped, 1U);
    EXPECT_EQ(undoAll(), "2 put back, 0 as before, 0 left");
    const std::string undone = "A2|Blas|C/ SOL|28013\nA3|Clara|C/ LUNA|28014\nA4|Daniel|C/ PEÑA|\n";
    EXPECT_EQ(rows(), undone);
    EXPECT_EQ(undoAll(), "0 put back, 2 as before, 0 left");
    EXPECT_EQ(rows(), undone);
}

TEST_F(Undo, FindsMovedRowsByTheirKeyAlthoughOtherColumnsHaveChanged) {
    {
        Batch batch(file, undoFile, code);
        batch.set(3, "VIA", "C/ LUNAR").set(4, "CP", "28001").finish();
    }
    remove("CLIENTES", "A1");
    edit("CLIENTES", "A3", "NOMBRE", "Clarisa");
    edit("CLIENTES", "A4", "CP", "28002");
    EXPECT_EQ(dbase::compactTable(file).dropped, 1U);
    EXPECT_EQ(undoAll(), "3 CP:  / 28002 (se ha cambiado desde entonces)\n1 put back, 0 as before, 1 left");
    EXPECT_EQ(rows(), "A2|Blas|C/ SOL|28013\nA3|Clarisa|C/ LUNA|28014\nA4|Daniel|C/ PEÑA|28002\n");
}

TEST_F(Undo, DoesNotChooseAmongMovedRowsThatAreAlike) {
    append("CLIENTES", {"A3", "Clara", "C/ LUNAR", "28014"}); // as record 3 will be
    {
        Batch batch(file, undoFile);
        batch.set(3, "VIA", "C/ LUNAR").finish();
    }
    remove("CLIENTES", "A1");
    dbase::compactTable(file);
    const std::string now = rows();
    EXPECT_EQ(undoAll(), "3 :  /  (hay varias filas que pueden ser ésta)\n0 put back, 0 as before, 1 left");
    EXPECT_EQ(rows(), now);
}

TEST_F(Undo, DoesNotChooseAmongRowsOfOneKey) {
    append("CLIENTES", {"A3", "Carla", "C/ LUNA", "28014"});
    {
        Batch batch(file, undoFile, code);
        batch.set(3, "VIA", "C/ LUNAR").finish();
    }
    remove("CLIENTES", "A1");
    dbase::compactTable(file);
    const std::string now = rows();
    EXPECT_EQ(undoAll(), "3 :  /  (hay varias filas que pueden ser ésta)\n0 put back, 0 as before, 1 left");
    EXPECT_EQ(rows(), now);
}

TEST_F(Undo, OfARowChangedTwiceEndsInItsFirstState) {
    const std::string before = rows();
    Batch batch(file, undoFile);
    batch.set(1, "VIA", "C/ MAYOR").finish();
    batch.set(1, "VIA", "CALLE MAYOR").finish();
    batch.set(1, "CP", "28012").finish();
    EXPECT_EQ(undoAll(), "3 put back, 0 as before, 0 left");
    EXPECT_EQ(rows(), before);
}

TEST_F(Undo, DeletesAddedRowsAndReturnsDeletedOnes) {
    const std::string before = rows();
    Batch batch(file, undoFile, code);
    batch.add({"B1", "Eva", "C/ RIO", "28020"}).erase(2).set(3, "CP", "28099").finish();
    EXPECT_EQ(rows(),
              "A1|Ana|C/ MAIOR|28013\nA3|Clara|C/ LUNA|28099\nA4|Daniel|C/ PEÑA|\nB1|Eva|C/ RIO|28020\n");
    EXPECT_EQ(undoAll(), "3 put back, 0 as before, 0 left");
    EXPECT_EQ(rows(), before);
    EXPECT_EQ(undoAll(), "0 put back, 3 as before, 0 left");
    EXPECT_EQ(rows(), before);
    EXPECT_EQ(batch.table->records().recordCount(), 5U) << "the deleted record itself is live again";
}

TEST_F(Undo, AddsADeletedRowAgainWhenCompactingHasTakenIt) {
    const std::string before = rows();
    {
        Batch batch(file, undoFile, code);
        batch.erase(2).finish();
    }
    EXPECT_EQ(dbase::compactTable(file).dropped, 1U);
    EXPECT_EQ(undoAll(), "1 put back, 0 as before, 0 left");
    EXPECT_EQ(rows(), before);
    EXPECT_EQ(undoAll(), "0 put back, 1 as before, 0 left");
    EXPECT_EQ(rows(), before);
}

TEST_F(Undo, LeavesAnAddedRowThatWasChangedSince) {
    Batch batch(file, undoFile, code);
    batch.add({"B1", "Eva", "C/ RIO", "28020"}).finish();
    edit("CLIENTES", "B1", "CP", "28021");
    EXPECT_EQ(undoAll(), "5 CP: 28020 / 28021 (se ha cambiado desde entonces)\n"
                         "0 put back, 0 as before, 1 left");
    EXPECT_NE(rows().find("B1|Eva|C/ RIO|28021"), std::string::npos);
}

TEST_F(Undo, DoesNotReturnARowWhoseKeyAnotherOneHas) {
    Batch batch(file, undoFile, code);
    batch.erase(2).finish();
    append("CLIENTES", {"A2", "Bruno", "C/ SOL", "28013"});
    const std::string now = rows();
    EXPECT_EQ(undoAll(), "5 NOMBRE: Blas / Bruno (otra fila tiene ya su clave)\n"
                         "0 put back, 0 as before, 1 left");
    EXPECT_EQ(rows(), now);
}

TEST_F(Undo, OfAdditionsAndDeletionsWantsAKey) {
    Batch batch(file, undoFile);
    batch.erase(2);
    EXPECT_THROW(batch.finish(), dbase::Error);
    EXPECT_NE(rows().find("A2|Blas"), std::string::npos);
}

TEST_F(Undo, OfSeveralTablesIsOneFile) {
    const std::string other = createTable(definition("OTRA"), {{"Z1", "Zoe", "C/ SOL", ""}});
    const std::string before = rows() + rows("OTRA");
    const auto one = dbase::Table::open(file), two = dbase::Table::open(other);
    {
        UndoWriter writer(undoFile, file, "la prueba");
        BatchChanges changes(one, writer, noKey), otherChanges(two, writer, code);
        const auto row = storedRecord(*one, 1), otherRow = storedRecord(*two, 1);
        changes.change(1, row, withValue(one->schema(), row, "CP", "28012"));
        otherChanges.change(1, otherRow, withValue(two->schema(), otherRow, "CP", "28015"));
        changes.finish();
        otherChanges.finish();
    }
    EXPECT_NE(rows() + rows("OTRA"), before);
    EXPECT_EQ(undoAll(), "2 put back, 0 as before, 0 left");
    EXPECT_EQ(rows() + rows("OTRA"), before);
}

TEST_F(Undo, OfMoreThanOneBatchIsWhole) {
    std::vector<Row> many;
    for (int i = 0; i < 1000; ++i) {
        many.push_back({std::to_string(1000 + i), "N", "C/ SOL", std::to_string(10000 + i)});
    }
    createTable(definition("MUCHAS"), many);
    const std::string before = rows("MUCHAS");
    Batch batch(folder / "MUCHAS.DBF", undoFile);
    for (dbase::RecordNumber number = 1000; number > 0; --number) {
        batch.set(number, "VIA", "C/ LUNA " + std::to_string(number));
    }
    batch.finish();
    EXPECT_EQ(std::ranges::count(batch.outcomes, 'D'), 1000);
    EXPECT_NE(rows("MUCHAS"), before);
    EXPECT_EQ(undoAll(), "1000 put back, 0 as before, 0 left");
    EXPECT_EQ(rows("MUCHAS"), before);
}

TEST_F(Undo, KnowsNothingOfARowThatAnotherStationHolds) {
    dbase::Dataset station("DB", "CLIENTES", "CODIGO");
    station.open(); // on A1
    station.edit();
    Batch batch(file, undoFile);
    batch.set(1, "VIA", "C/ MAYOR").set(2, "VIA", "C/ SOLANA").finish();
    EXPECT_EQ(batch.outcomes, "1L2D");
    station.cancel();
    EXPECT_EQ(undoAll(), "1 put back, 0 as before, 0 left");
}

TEST_F(Undo, LeavesARowThatAnotherStationHoldsAndPutsItBackLater) {
    const std::string before = rows();
    Batch batch(file, undoFile);
    batch.set(1, "VIA", "C/ MAYOR").finish();
    dbase::Dataset station("DB", "CLIENTES", "CODIGO");
    station.open();
    station.edit();
    EXPECT_EQ(undoAll(), "1 VIA: C/ MAIOR / C/ MAYOR (otro usuario la está modificando; espere y repita la "
                         "orden)\n0 put back, 0 as before, 1 left");
    station.cancel();
    EXPECT_EQ(undoAll(), "1 put back, 0 as before, 0 left");
    EXPECT_EQ(rows(), before);
}

TEST_F(Undo, KnowsNothingOfARowThatWasChangedBeforeItWasPosted) {
    Batch batch(file, undoFile);
    batch.set(1, "VIA", "C/ MAYOR").set(2, "VIA", "C/ SOLANA");
    edit("CLIENTES", "A1", "VIA", "AV DEL PARQUE");
    batch.finish();
    EXPECT_EQ(batch.outcomes, "2D1C");
    EXPECT_EQ(undoAll(), "1 put back, 0 as before, 0 left");
    EXPECT_NE(rows().find("A1|Ana|AV DEL PARQUE|28013\n"), std::string::npos) << rows();
}

TEST_F(Undo, WorksInAFolderToWhichTheTablesWereMoved) {
    {
        Batch batch(file, undoFile);
        batch.set(1, "VIA", "C/ MAYOR").finish();
    }
    std::filesystem::create_directory(folder / "nueva");
    for (const char* name : {"CLIENTES.DBF", "CLIENTES.MDX"}) {
        std::filesystem::rename(folder / name, std::filesystem::path(folder / "nueva") / name);
    }
    EXPECT_NE(refusal().find("CLIENTES.DBF"), std::string::npos) << refusal();
    EXPECT_EQ(undoAll(folder / "nueva"), "1 put back, 0 as before, 0 left");
    EXPECT_NE(refusal(folder.path()).find("no tiene la tabla CLIENTES"), std::string::npos);
}

TEST_F(Undo, OfATableWithOtherColumnsIsRefusedBeforeAnything) {
    {
        Batch batch(file, undoFile);
        batch.set(1, "VIA", "C/ MAYOR").finish();
    }
    std::filesystem::remove(folder / "CLIENTES.DBF");
    std::filesystem::remove(folder / "CLIENTES.MDX");
    createTable(
        ambrel::test::defineTable("CLIENTES", {"CODIGO C4", "NOMBRE C10", "VIA C19", "CP C6"}, {"CODIGO"}),
        {{"A1", "Ana", "C/ MAYOR", "28013"}});
    EXPECT_NE(refusal().find("no tiene las columnas de la tabla que se cambió"), std::string::npos)
        << refusal();
    EXPECT_EQ(rows(), "A1|Ana|C/ MAYOR|28013\n");
}

TEST_F(Undo, OfAnotherTableOfTheSameColumnsTouchesNoneOfItsRows) {
    {
        Batch batch(file, undoFile);
        batch.set(1, "VIA", "C/ MAYOR").set(2, "CP", "28012").finish();
    }
    std::filesystem::remove(folder / "CLIENTES.DBF");
    std::filesystem::remove(folder / "CLIENTES.MDX");
    createTable(definition("CLIENTES"), {{"X1", "Xana", "C/ MAYOR", "28013"}});
    EXPECT_EQ(undoAll(), "2 : "
                         " /  (la fila ya no está)\n"
                         "1 VIA: C/ MAIOR / C/ MAYOR (puede ser otra fila: han cambiado CODIGO, NOMBRE)\n"
                         "0 put back, 0 as before, 2 left");
    EXPECT_EQ(rows(), "X1|Xana|C/ MAYOR|28013\n");
}

TEST_F(Undo, UnderstandsALastLineThatWasWrittenByHalf) {
    {
        Batch batch(file, undoFile);
        batch.set(1, "VIA", "C/ MAYOR").set(2, "VIA", "C/ SOLANA").finish();
    }
    const std::string whole = text().substr(0, text().rfind("FIN")); // as of a run that died
    const std::string done = rows();
    const std::size_t last = whole.rfind("CAMBIO");
    for (std::size_t size = last; size < whole.size(); ++size) {
        writeText(whole.substr(0, size));
        const UndoReader reader(undoFile);
        EXPECT_EQ(reader.size(), 1U) << size;
        EXPECT_TRUE(reader.damagedLines().empty()) << size;
    }
    writeText(whole.substr(0, whole.size() - 9));
    EXPECT_EQ(undoAll(), "1 put back, 0 as before, 0 left");
}

TEST_F(Undo, KnowsWhetherLinesAreMissing) {
    {
        Batch batch(file, undoFile);
        batch.set(1, "VIA", "C/ MAYOR").set(2, "VIA", "C/ SOLANA").finish();
    }
    const std::string whole = text();
    EXPECT_TRUE(UndoReader(undoFile).isEnded());
    EXPECT_EQ(UndoReader(undoFile).missingEntries(), 0U);
    writeText(whole.substr(0, whole.rfind("CAMBIO"))); // a copy that was cut at the end of a line
    EXPECT_FALSE(UndoReader(undoFile).isEnded());
    const std::size_t first = whole.find("CAMBIO"), second = whole.find("CAMBIO", first + 1);
    writeText(whole.substr(0, first) + whole.substr(second));
    EXPECT_TRUE(UndoReader(undoFile).isEnded());
    EXPECT_EQ(UndoReader(undoFile).missingEntries(), 1U);
}

TEST_F(Undo, CutAnywhereNeverPutsAnythingWrongBack) {
    const std::string before = rows();
    {
        Batch batch(file, undoFile, code);
        batch.set(1, "VIA", "C/ MAYOR").set(2, "VIA", "C/ SOLANA").finish();
    }
    const std::string whole = text();
    for (std::size_t size = 0; size < whole.size(); ++size) {
        writeText(whole.substr(0, size));
        EXPECT_NO_THROW(EXPECT_LE(UndoReader(undoFile).size(), 2U)) << size;
    }
    writeText(whole);
    EXPECT_EQ(undoAll(), "2 put back, 0 as before, 0 left");
    EXPECT_EQ(rows(), before);
}

TEST_F(Undo, NamesLinesThatWereDamagedAndUsesTheOthers) {
    {
        Batch batch(file, undoFile);
        batch.set(1, "VIA", "C/ MAYOR").set(2, "VIA", "C/ SOLANA").finish();
    }
    std::string spoilt = text();
    spoilt[spoilt.find("MAIOR")] = 'N';
    writeText(spoilt);
    EXPECT_EQ(UndoReader(undoFile).damagedLines(), (std::vector<std::uint64_t>{3}));
    EXPECT_EQ(undoAll(), "1 put back, 0 as before, 0 left");
    EXPECT_NE(rows().find("A1|Ana|C/ MAYOR|28013\nA2|Blas|C/ SOL|28013\n"), std::string::npos) << rows();
}

TEST_F(Undo, RefusesFilesThatAreSomethingElse) {
    writeText("CODIGO,NOMBRE\nA1,Ana\n");
    EXPECT_NE(refusal().find("no es un fichero de deshacer"), std::string::npos) << refusal();
    writeText("CODIGO");
    EXPECT_NE(refusal().find("no es un fichero de deshacer"), std::string::npos) << refusal();
    writeText("AMBREL DESHACER 1\t2026\tx\t0123456789ABCDEF\n");
    EXPECT_NE(refusal().find("su primera línea está estropeada"), std::string::npos) << refusal();
    std::filesystem::remove(undoFile);
    EXPECT_NE(refusal().find("CLIENTES.deshacer"), std::string::npos) << refusal();
}

TEST_F(Undo, FileThatExistsIsNeverOverwritten) {
    writeText("lo de antes");
    EXPECT_EQ(dbase::test::errorOf([&] { Batch batch(file, undoFile); }).code(), dbase::ErrorCode::Exists);
    EXPECT_EQ(text(), "lo de antes");
}

TEST_F(Undo, FileWithoutEntriesIsRemoved) {
    {
        Batch batch(file, undoFile);
        batch.set(1, "VIA", "C/ MAIOR").finish(); // as it is
        EXPECT_EQ(batch.outcomes, "1D");
    }
    EXPECT_FALSE(std::filesystem::exists(undoFile));
}

TEST_F(Undo, FileThatFillsTheDiskEndsTheRunAndNothingIsLost) {
    std::vector<Row> many;
    for (int i = 0; i < 2000; ++i) {
        many.push_back({std::to_string(1000 + i), "N", "C/ SOL", std::to_string(10000 + i)});
    }
    createTable(definition("MUCHAS"), many);
    const std::string before = rows("MUCHAS");
    {
        Batch batch(folder / "MUCHAS.DBF", undoFile, code);
        const ambrel::test::FileSizeLimit limit(
            300'000); // a journal's room is allocated at once, and must fit
        const dbase::Error error = dbase::test::errorOf([&] {
            for (int round = 0; round < 10; ++round) {
                for (dbase::RecordNumber number = 1; number <= 2000; ++number) {
                    batch.set(number, "VIA", "C/ LUNA " + std::to_string(round));
                }
                batch.finish();
            }
        });
        EXPECT_EQ(error.code(), dbase::ErrorCode::DiskFull);
        EXPECT_NE(std::string(error.what()).find("CLIENTES.deshacer"), std::string::npos) << error.what();
    }
    EXPECT_NE(rows("MUCHAS"), before);
    const std::string result = undoAll();
    EXPECT_NE(result.find(" 0 left"), std::string::npos) << result;
    EXPECT_EQ(rows("MUCHAS"), before);
}

TEST_F(Undo, FolderThatMayNotBeWrittenPreventsTheChange) {
    if (!dbase::test::mayBecomeOthers()) {
        GTEST_SKIP() << dbase::test::wantsRoot;
    }
    std::filesystem::permissions(folder.path(), std::filesystem::perms(0755));
    for (const char* name : {"CLIENTES.DBF", "CLIENTES.MDX"}) {
        std::filesystem::permissions(folder / name, std::filesystem::perms(0666));
    }
    const std::string before = rows();
    const std::string error = dbase::test::as({4001, 4001}, [&] {
        Batch batch(file, undoFile);
        batch.set(1, "VIA", "C/ MAYOR").finish();
        return std::string("changed");
    });
    EXPECT_NE(error.find("CLIENTES"), std::string::npos) << error;
    EXPECT_EQ(rows(), before);
    EXPECT_FALSE(std::filesystem::exists(undoFile));
}

} // namespace
} // namespace loading
