// Changes of many rows, and putting them back.
#include "loading/undo.h"

#include <filesystem>

#include "UndoTest.h"
#include "dbase/dataset/dataset.h"
#include "dbase/system/error.h"
#include "dbase/table/compaction.h"

namespace loading {
namespace {

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

TEST_F(Undo, OfARowChangedTwiceInOneBatchEndsInItsFirstState) {
    const std::string before = rows();
    Batch batch(file, undoFile);
    const auto row = storedRecord(*batch.table, 1),
               once = withValue(batch.table->schema(), row, "VIA", "C/ MAYOR");
    batch.changes.change(1, row, once);
    batch.changes.change(1, once, withValue(batch.table->schema(), once, "CP", "28012"));
    batch.finish();
    EXPECT_EQ(batch.outcomes, "1D1D");
    EXPECT_NE(rows().find("A1|Ana|C/ MAYOR|28012\n"), std::string::npos) << rows();
    EXPECT_EQ(undoAll(), "2 put back, 0 as before, 0 left");
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

TEST_F(Undo, TwiceKeepsTheRowWhoseFormerValuesAnAddedOneHad) {
    const std::string before = rows();
    {
        const auto table = dbase::Table::open(file);
        UndoWriter writer(undoFile, file, "la prueba");
        const std::size_t position = writer.addTableOfWholeRows(file, table->schema(), code);
        const auto row = storedRecord(*table, 2);
        const auto changed = withValue(table->schema(), row, "CODIGO", "B2");
        table->overwrite(2, row, changed, dbase::Durability::Disk);
        writer.addition(position, table->append(row, dbase::Durability::Disk), row);
        writer.change(position, 2, row, changed);
        writer.sync();
    }
    EXPECT_EQ(undoAll(), "2 put back, 0 as before, 0 left");
    EXPECT_EQ(rows(), before);
    for (const std::uint64_t dropped : {0U, 1U}) { // that also took the record of the added row
        EXPECT_EQ(dropped == 0 ? 0U : dbase::compactTable(file).dropped, dropped);
        EXPECT_EQ(undoAll(), "0 put back, 2 as before, 0 left");
        EXPECT_EQ(rows(), before);
    }
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

TEST_F(Undo, OfADeletedRowThatIsThereAgainBesideAnotherOneOfItsKeySaysSo) {
    Batch batch(file, undoFile, code);
    batch.erase(2).finish();
    append("CLIENTES", {"A2", "Blas", "C/ SOL", "28013"});
    append("CLIENTES", {"A2", "Bruno", "C/ SOL", "28013"});
    EXPECT_EQ(undoAll(), "5 :  /  (otra fila tiene ya su clave)\n0 put back, 0 as before, 1 left");
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

TEST_F(Undo, BesideACopyOfTheTableWantsToKnowWhichOneIsMeant) {
    Batch(file, undoFile).set(1, "VIA", "C/ MAYOR").finish();
    const std::string changed = rows();
    std::filesystem::copy(folder.path(), folder.path() + "-copia");
    undoFile = folder.path() + "-copia/CLIENTES.deshacer";
    EXPECT_NE(refusal().find("diga en qué carpeta"), std::string::npos) << refusal();
    EXPECT_EQ(rows(), changed);
    EXPECT_EQ(undoAll(folder.path() + "-copia"), "1 put back, 0 as before, 0 left");
    EXPECT_EQ(rows(), changed);
    std::filesystem::remove_all(folder.path() + "-copia");
}

TEST_F(Undo, BesideALinkToTheTableIsOfThatTable) {
    Batch(file, undoFile).set(1, "VIA", "C/ MAYOR").finish();
    const std::string linked = folder.path() + "-enlace";
    std::filesystem::create_directory_symlink(folder.path(), linked);
    undoFile = linked + "/CLIENTES.deshacer";
    EXPECT_EQ(undoAll(), "1 put back, 0 as before, 0 left");
    std::filesystem::remove(linked);
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

} // namespace
} // namespace loading
