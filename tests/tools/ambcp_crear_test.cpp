// ambcp crear: the five tables, empty or with the sample.
#include "AmbcpTest.h"

#include <algorithm>
#include <filesystem>

#include "dbase/system/databases.h"

namespace ambcp::test {
namespace {

namespace fs = std::filesystem;

class AmbcpCrear : public AmbcpTest {};

constexpr const char* tables[] = {"MUNICIPI", "POSTAL", "PROVIN", "TIPO_VIA", "MUNICIMJ"};

TEST_F(AmbcpCrear, MakesFiveEmptyTables) {
    done({"crear", "."});
    for (const std::string table : tables) {
        EXPECT_TRUE(fs::exists(folder / (table + ".DBF"))) << table;
        EXPECT_TRUE(fs::exists(folder / (table + ".MDX"))) << table;
        const std::string listing = done({"listar", ".", table});
        EXPECT_EQ(listing.find('\n'), listing.size() - 1) << "more than a header: " << listing;
    }
}

TEST_F(AmbcpCrear, MakesTheFolderWithItsParents) {
    done({"crear", "uno/dos"});
    EXPECT_TRUE(fs::exists(folder / "uno/dos/POSTAL.DBF"));
}

TEST_F(AmbcpCrear, SampleIsTheWholeSample) {
    done({"crear", ".", "--muestra"});
    for (const std::string table : tables) {
        EXPECT_EQ(done({"listar", ".", table}), content(SAMPLE_FOLDER "/" + table + ".csv")) << table;
    }
}

TEST_F(AmbcpCrear, SampleIsInTheOrderOfItsMunicipalities) {
    done({"crear", ".", "--muestra"});
    const std::string before = done({"listar", ".", "MUNICIPI"});
    folder.write("filas.csv", before);
    done({"cargar", ".", "MUNICIPI", "filas.csv", "--reemplazar"});
    EXPECT_EQ(done({"listar", ".", "MUNICIPI"}), before);
}

TEST_F(AmbcpCrear, SampleTablesAreSound) {
    done({"crear", ".", "--muestra"});
    const std::string csv = content(SAMPLE_FOLDER "/POSTAL.csv");
    const auto rows = std::count(csv.begin(), csv.end(), '\n') - 1;
    EXPECT_EQ(done({"comprobar", ".", "POSTAL"}),
              "POSTAL: " + std::to_string(rows) + " registros, 3 tags: correcta\n");
    done({"comprobar", "."});
}

TEST_F(AmbcpCrear, SampleHasMunicipalityFilesAndSavedAnswers) {
    done({"crear", ".", "--muestra"});
    const std::string lines = content("POSTALES/28-ALCALA DE HENARES.dat");
    EXPECT_TRUE(lines.starts_with("28801:Abeto del, calle\r\n"));
    EXPECT_NE(lines.find("28807:Puente de la \xD1ora, carretera\r\n"), std::string::npos);
    EXPECT_EQ(content("POSTALES/LA RIOJA/ALFARO.xml"),
              content(SAMPLE_FOLDER "/postales/LA RIOJA/ALFARO.xml"));
    done({"crear", "vacia"});
    EXPECT_FALSE(fs::exists(folder / "vacia/POSTALES"));
}

TEST_F(AmbcpCrear, SampleLeavesTheUsersMunicipalityFilesUnlessForced) {
    fs::create_directories(folder / "POSTALES");
    folder.write("POSTALES/28-ALCALA DE HENARES.dat", "mine");
    done({"crear", ".", "--muestra"});
    EXPECT_EQ(content("POSTALES/28-ALCALA DE HENARES.dat"), "mine");
    done({"crear", ".", "--muestra", "--forzar"});
    EXPECT_NE(content("POSTALES/28-ALCALA DE HENARES.dat"), "mine");
}

TEST_F(AmbcpCrear, NeverOverwritesATable) {
    folder.write("postal.dbf", "mine");
    leaveUnchecked();
    EXPECT_EQ(refused({"crear", ".", "--muestra"}),
              "ambcp: en la carpeta «.» ya hay postal.dbf. No se ha creado nada. «--forzar» sustituye las "
              "tablas que haya, y con ellas sus datos.\n");
    EXPECT_EQ(content("postal.dbf"), "mine");
    EXPECT_FALSE(fs::exists(folder / "MUNICIPI.DBF"));
}

TEST_F(AmbcpCrear, OverwritesWhenForced) {
    done({"crear", ".", "--muestra"});
    done({"crear", ".", "--forzar"});
    EXPECT_EQ(done({"listar", ".", "TIPO_VIA"}), "CODIGO,NOMBRE,NOMBRE_CAT,CODPOSTAL\n");
    done({"crear", ".", "--forzar", "--muestra"});
    EXPECT_EQ(done({"listar", ".", "TIPO_VIA"}), content(SAMPLE_FOLDER "/TIPO_VIA.csv"));
}

TEST_F(AmbcpCrear, ForcedInAFolderWithoutTablesCreatesThem) {
    done({"crear", "nueva", "--forzar"});
    EXPECT_TRUE(fs::exists(folder / "nueva/PROVIN.MDX"));
}

TEST_F(AmbcpCrear, OtherTablesOfTheFolderStay) {
    createTable(ambrel::test::defineTable("OTRA", {"COD C3"}, {"COD"}), {{"a"}});
    done({"crear", "."});
    EXPECT_EQ(done({"listar", ".", "OTRA"}), "COD\na\n");
}

} // namespace
} // namespace ambcp::test
