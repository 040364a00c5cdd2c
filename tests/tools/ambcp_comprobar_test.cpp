// ambcp comprobar and ambcp reindexar.

#include "AmbcpTest.h"

#include <filesystem>

#include "dbase/table/table_definition.h"

namespace ambcp::test {
namespace {

namespace fs = std::filesystem;

class AmbcpComprobar : public AmbcpTest {
protected:
    AmbcpComprobar() {
        done({"crear", "."});
        folder.write("filas.csv", "CODIGO,PROVINCIA\n001,ALAVA\n002,ALBACETE\n003,ALICANTE\n");
        done({"cargar", ".", "PROVIN", "filas.csv"});
    }

    /// Overwrites one byte of a file.
    void damage(const std::string& file, std::size_t place, char byte) const {
        std::string bytes = content(file);
        bytes.at(place) = byte;
        folder.write(file, bytes);
    }
};

TEST_F(AmbcpComprobar, ASoundFolderListsEachTableAsCorrect) {
    EXPECT_EQ(done({"comprobar", "."}), "MUNICIMJ: 0 registros, 1 tag: correcta\n"
                                        "MUNICIPI: 0 registros, 3 tags: correcta\n"
                                        "POSTAL: 0 registros, 3 tags: correcta\n"
                                        "PROVIN: 3 registros, 2 tags: correcta\n"
                                        "TIPO_VIA: 0 registros, 2 tags: correcta\n");
}

TEST_F(AmbcpComprobar, OneTableIsCheckedByItself) {
    EXPECT_EQ(done({"comprobar", ".", "provin"}), "PROVIN: 3 registros, 2 tags: correcta\n");
}

TEST_F(AmbcpComprobar, ANoteIsNotAProblem) {
    dbase::createTable(folder.path(), {.name = "PESOS",
                                       .columns = {{"PESO", dbase::ColumnType::Numeric, 8, 3, 0}},
                                       .tags = {{.name = "PESO", .expression = "PESO"}}});
    folder.write("pesos.csv", "PESO\n0\n0.05\n");
    done({"cargar", ".", "PESOS", "pesos.csv"});
    EXPECT_EQ(done({"comprobar", ".", "PESOS"}),
              "./PESOS.MDX: nota: tag PESO: ordena los números entre 0 y 0,1 antes que el cero, como otros "
              "programas\n"
              "PESOS: 2 registros, 1 tag: correcta\n");
}

TEST_F(AmbcpComprobar, FindingsNameFileAndPlace) {
    leaveUnchecked();
    fs::resize_file(folder / "PROVIN.DBF", fs::file_size(folder / "PROVIN.DBF") - 34);
    const Outcome run = ambcp({"comprobar", "."});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.errors, "");
    EXPECT_NE(run.output.find("./PROVIN.DBF: cabecera: la tabla está cortada: dice tener 3 registros y hay 2 "
                              "completos; "),
              std::string::npos)
        << run.output;
    EXPECT_NE(run.output.find("PROVIN: 2 registros, 2 tags: "), std::string::npos) << run.output;
    EXPECT_NE(run.output.find("TIPO_VIA: 0 registros, 2 tags: correcta\n"), std::string::npos) << run.output;
}

TEST_F(AmbcpComprobar, OneOfOursWithoutIndexIsNotCorrectThoughItsHeaderAsksForNone) {
    constexpr std::size_t indexFlag = 28; // in the header
    leaveUnchecked();
    fs::remove(folder / "PROVIN.MDX");
    damage("PROVIN.DBF", indexFlag, 0);
    const Outcome run = ambcp({"comprobar", ".", "PROVIN"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.output.find("falta el .MDX con los tags de esta tabla"), std::string::npos) << run.output;
    done({"reindexar", ".", "PROVIN"});
    EXPECT_EQ(done({"comprobar", ".", "PROVIN"}), "PROVIN: 3 registros, 2 tags: correcta\n");
}

TEST_F(AmbcpComprobar, KeyThatIsNotItsRecordsIsFound) {
    const std::string index = content("PROVIN.MDX");
    damage("PROVIN.MDX", index.find("ALBACETE"), 'X');
    const Outcome run = ambcp({"comprobar", ".", "PROVIN"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.output.find("tag ALFABETICO"), std::string::npos) << run.output;
    done({"reindexar", ".", "PROVIN"});
    done({"comprobar", "."});
}

TEST_F(AmbcpComprobar, FindingNamesItsFileOnce) {
    folder.write("PROVIN.MDX", "basura");
    const Outcome run = ambcp({"comprobar", ".", "PROVIN"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.output.find("./PROVIN.MDX: índice: "), 0U) << run.output;
    EXPECT_EQ(run.output.find("./PROVIN.MDX", 1), std::string::npos) << run.output;
    done({"reindexar", ".", "PROVIN"});
}

TEST_F(AmbcpComprobar, AdviceFollowsFromWhatIsDamaged) {
    leaveUnchecked();
    fs::remove(folder / "PROVIN.MDX");
    fs::resize_file(folder / "MUNICIPI.DBF", 40);
    const Outcome run = ambcp({"comprobar", "."});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(
        run.output.find("PROVIN: 3 registros, 0 tags: 1 problema; \"ambcp reindexar\" rehace el índice\n"),
        std::string::npos)
        << run.output;
    EXPECT_NE(run.output.find("MUNICIPI: 0 registros, 0 tags: 1 problema; recupere la copia de seguridad\n"),
              std::string::npos)
        << run.output;
}

TEST_F(AmbcpComprobar, LostIndexOfATableWhoseTagsNobodyKnowsIsToBeRestored) {
    createTable(ambrel::test::defineTable("OTRA", {"COD C3"}, {"COD"}), {{"b"}});
    fs::remove(folder / "OTRA.MDX");
    leaveUnchecked();
    const std::string output = ambcp({"comprobar", ".", "OTRA"}).output;
    EXPECT_NE(output.find("1 problema; recupere la copia de seguridad\n"), std::string::npos) << output;
}

TEST_F(AmbcpComprobar, TablesThatTheFolderLacksAreNamed) {
    for (const char* file : {"PROVIN.DBF", "PROVIN.MDX", "MUNICIPI.DBF", "MUNICIPI.MDX"}) {
        fs::remove(folder / file);
    }
    const Outcome run = ambcp({"comprobar", "."});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.output, "MUNICIMJ: 0 registros, 1 tag: correcta\n"
                          "POSTAL: 0 registros, 3 tags: correcta\n"
                          "TIPO_VIA: 0 registros, 2 tags: correcta\n"
                          "MUNICIPI: falta la tabla; recupere la copia de seguridad\n"
                          "PROVIN: falta la tabla; recupere la copia de seguridad\n");
    EXPECT_EQ(ambcp({"comprobar", ".", "POSTAL"}).exitCode, 0);
}

TEST_F(AmbcpComprobar, FolderOfOtherTablesLacksNothing) {
    const fs::path others = folder / "otras";
    fs::create_directory(others);
    createTable(ambrel::test::defineTable("OTRA", {"COD C3"}), {{"b"}});
    fs::rename(folder / "OTRA.DBF", others / "OTRA.DBF");
    EXPECT_EQ(done({"comprobar", "otras"}), "OTRA: 1 registro, 0 tags: correcta\n");
}

TEST_F(AmbcpComprobar, NothingIsChanged) {
    const std::string records = content("PROVIN.DBF"), index = content("PROVIN.MDX");
    done({"comprobar", "."});
    EXPECT_EQ(content("PROVIN.DBF"), records);
    EXPECT_EQ(content("PROVIN.MDX"), index);
}

TEST_F(AmbcpComprobar, WhatIsNotThereIsNamed) {
    EXPECT_EQ(refused({"comprobar", ".", "NADA"}), "ambcp: en la carpeta «.» no hay ninguna tabla «NADA»\n");
    EXPECT_EQ(refused({"comprobar", "no"}), "ambcp: no existe la carpeta «no»\n");
    fs::create_directory(folder / "vacia");
    EXPECT_EQ(refused({"comprobar", "vacia"}), "ambcp: en la carpeta «vacia» no hay ninguna tabla\n");
}

class AmbcpReindexar : public AmbcpComprobar {};

TEST_F(AmbcpReindexar, LostIndexesAreMadeAnew) {
    fs::remove(folder / "PROVIN.MDX");
    folder.write("TIPO_VIA.MDX", "basura");
    EXPECT_EQ(ambcp({"comprobar", "."}).exitCode, 1);
    EXPECT_EQ(done({"reindexar", "."}), "MUNICIMJ: índice rehecho.\n"
                                        "MUNICIPI: índice rehecho.\n"
                                        "POSTAL: índice rehecho.\n"
                                        "PROVIN: índice rehecho.\n"
                                        "TIPO_VIA: índice rehecho.\n");
    done({"comprobar", "."});
    EXPECT_EQ(done({"listar", ".", "PROVIN", "--tag", "ALFABETICO", "--desde", "ALB", "--max", "1"}),
              "PROVINCIA,CODIGO,COD_198,GRUPO\nALBACETE,002,,\n");
}

TEST_F(AmbcpReindexar, TagsOfAForeignTableAreKept) {
    createTable(ambrel::test::defineTable("OTRA", {"COD C3"}, {"ALREVES=UPPER(COD)"}), {{"b"}, {"A"}});
    EXPECT_EQ(done({"reindexar", ".", "OTRA"}), "OTRA: índice rehecho.\n");
    EXPECT_EQ(done({"listar", ".", "OTRA", "--tag", "ALREVES"}), "COD\nA\nb\n");
}

TEST_F(AmbcpReindexar, ForeignTableWithoutIndexIsPassedOver) {
    createTable(ambrel::test::defineTable("OTRA", {"COD C3"}), {{"b"}});
    EXPECT_NE(done({"reindexar", "."}).find("OTRA: no tiene índice.\n"), std::string::npos);
}

TEST_F(AmbcpReindexar, ForeignTableWhoseTagsNobodyKnowsIsAFailure) {
    const std::string file = createTable(ambrel::test::defineTable("OTRA", {"COD C3"}, {"COD"}), {{"b"}});
    fs::remove(folder / "OTRA.MDX");
    leaveUnchecked();
    const std::string before = content(file);
    refused({"reindexar", ".", "OTRA"});
    EXPECT_EQ(content(file), before);
}

TEST_F(AmbcpReindexar, OneFailureDoesNotKeepTheOthersFromBeingRebuilt) {
    leaveUnchecked();
    folder.write("MUNICIPI.DBF", "basura");
    fs::remove(folder / "PROVIN.MDX");
    const Outcome run = ambcp({"reindexar", "."});
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_EQ(run.errors.rfind("ambcp: ./MUNICIPI.DBF: ", 0), 0U) << run.errors;
    EXPECT_NE(run.output.find("PROVIN: índice rehecho.\n"), std::string::npos);
}

} // namespace
} // namespace ambcp::test
