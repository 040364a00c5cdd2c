// ambcp deshacer: puts back what an order changed in tables by the lot.
#include "AmbcpTest.h"

#include <filesystem>
#include <fstream>

#include "dbase/dataset/dataset.h"
#include "dbase/support/StoredTable.h"
#include "loading/batch_changes.h"

namespace ambcp::test {
namespace {

class AmbcpDeshacer : public AmbcpTest {
protected:
    AmbcpDeshacer() {
        file =
            createTable(ambrel::test::defineTable("CLIENTES", {"CODIGO C4", "VIA C20", "CP C5"}, {"CODIGO"}),
                        {{"A1", "C/ MAIOR", "28013"}, {"A2", "C/ PEÑA", "28013"}});
        before = done({"listar", ".", "CLIENTES"});
        loading::UndoWriter undo(folder / "CLIENTES.deshacer", file, "la prueba");
        const auto table = dbase::Table::open(file);
        loading::BatchChanges changes(table, undo, {});
        for (const dbase::RecordNumber number : {1U, 2U}) {
            const auto row = dbase::test::storedRecord(*table, number);
            changes.change(number, row, dbase::test::withValue(table->schema(), row, "VIA", "CL MAYOR"));
        }
        changes.finish();
    }

    void setStreet(const std::string& code, const std::string& street) {
        dbase::Dataset station("DB", "CLIENTES", "CODIGO");
        station.open();
        ASSERT_TRUE(station.seek({{"CODIGO", code}}, dbase::SeekMode::Exact));
        station.edit();
        station.field("VIA").setText(street);
        station.post();
    }

    std::string file, before;
};

TEST_F(AmbcpDeshacer, PutsEveryRowBackAndMayBeRepeated) {
    EXPECT_NE(done({"listar", ".", "CLIENTES"}), before);
    const Outcome run = ambcp({"deshacer", "CLIENTES.deshacer"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.output, "");
    EXPECT_EQ(run.errors, "ambcp: 2 filas devueltas a como estaban; 0 ya estaban así; 0 no se han tocado\n");
    EXPECT_EQ(done({"listar", ".", "CLIENTES"}), before);
    const Outcome second = ambcp({"deshacer", "CLIENTES.deshacer"});
    EXPECT_EQ(second.exitCode, 0);
    EXPECT_EQ(second.errors,
              "ambcp: 0 filas devueltas a como estaban; 2 ya estaban así; 0 no se han tocado\n");
    EXPECT_EQ(done({"listar", ".", "CLIENTES"}), before);
}

TEST_F(AmbcpDeshacer, ListsWhatSomebodyHasChangedSince) {
    setStreet("A1", "AV SUR, 3");
    const Outcome run = ambcp({"deshacer", "CLIENTES.deshacer"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.output, "TABLA,REGISTRO,COLUMNA,ANTES,AHORA,MOTIVO\n" +
                              std::filesystem::canonical(file).string() +
                              ",1,VIA,C/ MAIOR,\"AV SUR, 3\",se ha cambiado desde entonces\n");
    EXPECT_EQ(run.errors, "ambcp: 1 fila devuelta a como estaba; 0 ya estaban así; 1 no se ha tocado\n");
    EXPECT_EQ(done({"listar", ".", "CLIENTES"}), "CODIGO,VIA,CP\nA1,\"AV SUR, 3\",28013\nA2,C/ PEÑA,28013\n");
}

TEST_F(AmbcpDeshacer, SaysThatLinesAreMissing) {
    const dbase::test::Bytes bytes = dbase::test::readFile(folder / "CLIENTES.deshacer");
    const std::string whole(bytes.begin(), bytes.end());
    const auto put = [&](const std::string& text) {
        std::ofstream(folder / "CLIENTES.deshacer", std::ios::binary) << text;
    };
    const std::size_t first = whole.find("CAMBIO"), second = whole.find("CAMBIO", first + 1);
    put(whole.substr(0, second)); // a copy that was cut
    const Outcome cut = ambcp({"deshacer", "CLIENTES.deshacer"});
    EXPECT_EQ(cut.exitCode, 0);
    EXPECT_NE(cut.errors.find("CLIENTES.deshacer: no llega a su final"), std::string::npos) << cut.errors;
    put(whole.substr(0, first) + whole.substr(second));
    const Outcome holed = ambcp({"deshacer", "CLIENTES.deshacer"});
    EXPECT_EQ(holed.exitCode, 1);
    EXPECT_NE(holed.errors.find("CLIENTES.deshacer: le falta una línea; lo que decía no se deshace"),
              std::string::npos)
        << holed.errors;
}

TEST_F(AmbcpDeshacer, GoesOnWhenTheReaderOfItsListHasGone) {
    setStreet("A2", "AV SUR");
    const Outcome run = shell("{ \"$AMBCP\" deshacer CLIENTES.deshacer; echo $? >exit; } | true; cat exit");
    EXPECT_EQ(run.output, "1\n");
    EXPECT_EQ(done({"listar", ".", "CLIENTES"}), "CODIGO,VIA,CP\nA1,C/ MAIOR,28013\nA2,AV SUR,28013\n");
}

TEST_F(AmbcpDeshacer, NamesDamagedLines) {
    std::string text = content("CLIENTES.deshacer");
    text[text.find("MAIOR")] = 'N';
    std::ofstream(folder / "CLIENTES.deshacer", std::ios::binary) << text;
    const Outcome run = ambcp({"deshacer", "CLIENTES.deshacer"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.errors, "ambcp: CLIENTES.deshacer: la línea 3 está estropeada; lo que decía no se deshace\n"
                          "ambcp: 1 fila devuelta a como estaba; 0 ya estaban así; 0 no se han tocado\n");
}

TEST_F(AmbcpDeshacer, FindsTheTablesInAnotherFolder) {
    std::filesystem::create_directory(folder / "nueva");
    for (const char* name : {"CLIENTES.DBF", "CLIENTES.MDX"}) {
        std::filesystem::rename(folder / name, std::filesystem::path(folder / "nueva") / name);
    }
    EXPECT_NE(refused({"deshacer", "CLIENTES.deshacer"}).find("CLIENTES.DBF"), std::string::npos);
    EXPECT_EQ(ambcp({"deshacer", "CLIENTES.deshacer", "nueva"}).exitCode, 0);
    EXPECT_EQ(done({"listar", "nueva", "CLIENTES"}), before);
}

TEST_F(AmbcpDeshacer, RefusesAFileThatIsSomethingElse) {
    EXPECT_NE(refused({"deshacer", "CLIENTES.DBF"}).find("no es un fichero de deshacer"), std::string::npos);
    EXPECT_NE(refused({"deshacer", "nada.deshacer"}).find("nada.deshacer"), std::string::npos);
    EXPECT_NE(refused({"deshacer", "."}).find("."), std::string::npos);
}

TEST_F(AmbcpDeshacer, WorksWhileAnotherStationHasTheTableOpen) {
    dbase::Dataset station("DB", "CLIENTES", "CODIGO");
    station.open();
    station.edit(); // A1
    const Outcome run = ambcp({"deshacer", "CLIENTES.deshacer"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.output.find(",1,VIA,C/ MAIOR,CL MAYOR,otro usuario la está modificando"), std::string::npos)
        << run.output;
    station.cancel();
    EXPECT_EQ(ambcp({"deshacer", "CLIENTES.deshacer"}).exitCode, 0);
    station.refresh();
    EXPECT_EQ(station.field("VIA").text(), "C/ MAIOR");
}

} // namespace
} // namespace ambcp::test
