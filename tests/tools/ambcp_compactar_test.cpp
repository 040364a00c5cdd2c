// ambcp compactar: drops deleted rows.
#include "AmbcpTest.h"

#include <filesystem>

#include "dbase/dataset/dataset.h"

namespace ambcp::test {
namespace {

class AmbcpCompactar : public AmbcpTest {
protected:
    AmbcpCompactar() { done({"crear", ".", "--muestra"}); }

    void deleteFirst(const std::string& table, int rows) {
        dbase::Dataset dataset("DB", table);
        dataset.open();
        for (int i = 0; i < rows; ++i) {
            dataset.first();
            dataset.erase();
        }
    }
};

TEST_F(AmbcpCompactar, DropsTheDeletedRowsOfATable) {
    deleteFirst("PROVIN", 2);
    const std::string before = done({"listar", ".", "PROVIN"});
    const auto size = std::filesystem::file_size(folder / "PROVIN.DBF");
    EXPECT_EQ(done({"compactar", ".", "PROVIN"}), "PROVIN: 2 filas borradas quitadas; quedan 95.\n");
    EXPECT_EQ(done({"listar", ".", "PROVIN"}), before);
    EXPECT_LT(std::filesystem::file_size(folder / "PROVIN.DBF"), size);
    EXPECT_EQ(done({"compactar", ".", "PROVIN"}),
              "PROVIN: no tiene filas borradas; no se ha cambiado nada.\n");
}

TEST_F(AmbcpCompactar, CompactsAllTablesOfTheFolder) {
    deleteFirst("PROVIN", 1);
    deleteFirst("TIPO_VIA", 1);
    const std::string output = done({"compactar", "."});
    EXPECT_NE(output.find("PROVIN: 1 fila borrada quitada;"), std::string::npos) << output;
    EXPECT_NE(output.find("TIPO_VIA: 1 fila borrada quitada;"), std::string::npos) << output;
    EXPECT_NE(output.find("POSTAL: no tiene filas borradas"), std::string::npos) << output;
}

TEST_F(AmbcpCompactar, RefusesATableThatAStationHasOpenAndDoesTheOthers) {
    deleteFirst("PROVIN", 1);
    deleteFirst("TIPO_VIA", 1);
    const std::string table = content("PROVIN.DBF");
    dbase::Dataset station("DB", "PROVIN"); // of this program, not of the command
    station.open();
    const Outcome run = ambcp({"compactar", "."});
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_NE(run.errors.find("PROVIN.DBF: la tabla está abierta en otro programa"), std::string::npos)
        << run.errors;
    EXPECT_NE(run.errors.find("No se ha cambiado nada."), std::string::npos) << run.errors;
    EXPECT_NE(run.output.find("TIPO_VIA: 1 fila borrada quitada;"), std::string::npos) << run.output;
    EXPECT_EQ(content("PROVIN.DBF"), table);
}

TEST_F(AmbcpCompactar, ACutTableIsNotTouched) {
    const std::string whole = content("PROVIN.DBF");
    const std::string cut = whole.substr(0, whole.size() - 100);
    folder.write("PROVIN.DBF", cut);
    const Outcome run = ambcp({"compactar", ".", "PROVIN"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.errors.find("la tabla está cortada"), std::string::npos) << run.errors;
    EXPECT_EQ(content("PROVIN.DBF"), cut);
    folder.write("PROVIN.DBF", whole);
}

} // namespace
} // namespace ambcp::test
