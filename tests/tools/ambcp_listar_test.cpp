// ambcp listar: a table as CSV.
#include "AmbcpTest.h"

#include <unistd.h>

#include <filesystem>
#include <span>
#include <string>
#include <vector>

#include "dbase/dataset/dataset.h"
#include "dbase/journal/journal.h"
#include "dbase/table/table.h"

namespace ambcp::test {
namespace {

using ambrel::test::defineTable;

class AmbcpListar : public AmbcpTest {
protected:
    AmbcpListar() {
        createTable(defineTable("CALLES",
                                {"PROV C2", "CAP C1", "VIA C9", "NUM N5", "PRECIO N8.2", "ALTA D", "SI L"},
                                {"VIA=PROV+CAP+VIA", "NUM", "ALTA", "MAYUS=UPPER(VIA)"}),
                    {{"28", "0", "sol", "3", "1.5", "20240229", "T"},
                     {"08", "0", "Ñu, \"A\"", "-10", "", "", "F"},
                     {"28", "0", "Alba", "20", "-0.25", "19991231", ""},
                     {"28", "9", "Mar", "", "7", "20010101", "T"}});
    }

    /// Column VIA of a listing, in one line.
    std::string vias(std::vector<std::string> options) const {
        options.insert(options.begin(), {"listar", ".", "CALLES"});
        std::string names;
        const std::string listing = done(options);
        for (const std::string name : {"sol", "Alba", "Mar", "Ñu"}) {
            if (const std::size_t at = listing.find(name); at != std::string::npos) {
                names.resize(std::max(names.size(), at + name.size()), ' ');
                names.replace(at, name.size(), name);
            }
        }
        std::erase(names, ' ');
        return names;
    }
};

TEST_F(AmbcpListar, WithoutATagItIsTheOrderOfTheFile) {
    EXPECT_EQ(done({"listar", ".", "CALLES"}), "PROV,CAP,VIA,NUM,PRECIO,ALTA,SI\n"
                                               "28,0,sol,3,1.50,2024-02-29,True\n"
                                               "08,0,\"Ñu, \"\"A\"\"\",-10,,,False\n"
                                               "28,0,Alba,20,-0.25,1999-12-31,\n"
                                               "28,9,Mar,,7.00,2001-01-01,True\n");
}

TEST_F(AmbcpListar, WithATagItIsTheOrderOfTheTag) {
    EXPECT_EQ(vias({"--tag", "VIA"}), "ÑuAlbasolMar");
    EXPECT_EQ(vias({"--tag", "num"}), "ÑuMarsolAlba");
}

TEST_F(AmbcpListar, RecordNumbersComeFirstWhenAskedFor) {
    EXPECT_EQ(done({"listar", ".", "CALLES", "--tag", "NUM", "--registro", "--max", "1"}),
              "_REG,PROV,CAP,VIA,NUM,PRECIO,ALTA,SI\n2,08,0,\"Ñu, \"\"A\"\"\",-10,,,False\n");
}

TEST_F(AmbcpListar, AFilterHidesTheOtherRows) {
    EXPECT_EQ(vias({"--filtro", "NUM>=3 AND PROV='28'"}), "solAlba");
    EXPECT_EQ(vias({"--filtro", "SI=True", "--tag", "VIA"}), "solMar");
    EXPECT_EQ(vias({"--filtro", "VIA='Ñu, \"A\"'"}), "Ñu");
}

TEST_F(AmbcpListar, BeginsAtAKeySpreadOverTheColumnsOfTheTag) {
    EXPECT_EQ(vias({"--tag", "VIA", "--desde", "28"}), "AlbasolMar");
    EXPECT_EQ(vias({"--tag", "VIA", "--desde", "280B"}), "solMar");
    EXPECT_EQ(vias({"--tag", "VIA", "--desde", "289Mar"}), "Mar");
    EXPECT_EQ(vias({"--tag", "VIA", "--desde", "280Á"}), "Mar");
}

TEST_F(AmbcpListar, BeginsAtANumberADateOrAnExpression) {
    EXPECT_EQ(vias({"--tag", "NUM", "--desde", "4"}), "Alba");
    EXPECT_EQ(vias({"--tag", "ALTA", "--desde", "2001-01-01"}), "MarsolÑu"); // blank dates come last
    EXPECT_EQ(vias({"--tag", "MAYUS", "--desde", "mb"}), "solÑu");
}

TEST_F(AmbcpListar, FromAKeyAfterTheLastOneListsNothing) {
    EXPECT_EQ(done({"listar", ".", "CALLES", "--tag", "VIA", "--desde", "99"}),
              "PROV,CAP,VIA,NUM,PRECIO,ALTA,SI\n");
}

TEST_F(AmbcpListar, FromAKeyInsideAFilter) {
    EXPECT_EQ(vias({"--tag", "VIA", "--desde", "280", "--filtro", "CAP='9'"}), "Mar");
}

TEST_F(AmbcpListar, EndsAfterTheMostRowsAskedFor) {
    EXPECT_EQ(vias({"--max", "2"}), "solÑu");
    EXPECT_EQ(vias({"--max", "0"}), "");
    EXPECT_EQ(vias({"--max", "99"}), "solÑuAlbaMar");
}

TEST_F(AmbcpListar, DeletedRecordsAreInvisible) {
    {
        dbase::Dataset table("DB", "CALLES");
        table.open();
        table.erase();
    }
    EXPECT_EQ(vias({}), "ÑuAlbaMar");
    EXPECT_EQ(vias({"--tag", "VIA"}), "ÑuAlbaMar");
}

TEST_F(AmbcpListar, ATableInAnotherCodePageIsListedInUtf8) {
    dbase::TableDefinition definition = defineTable("VIEJA", {"NOMBRE C6"}, {"NOMBRE"});
    definition.languageDriver = static_cast<dbase::LanguageDriver>(0x02);
    createTable(definition, {});
    folder.write("filas.csv", "NOMBRE\nñandú\notro\n");
    done({"cargar", ".", "VIEJA", "filas.csv"});
    EXPECT_NE(content("VIEJA.DBF")
                  .find("\xA4"
                        "and"
                        "\xA3 "),
              std::string::npos);
    EXPECT_EQ(done({"listar", ".", "VIEJA", "--filtro", "NOMBRE='ñandú'"}), "NOMBRE\nñandú\n");
    EXPECT_EQ(done({"listar", ".", "VIEJA", "--tag", "NOMBRE", "--desde", "ñ"}), "NOMBRE\nñandú\n");
}

TEST_F(AmbcpListar, ATableWithoutIndexHasNoTags) {
    createTable(defineTable("SUELTA", {"COD C3"}), {{"b"}, {"a"}});
    EXPECT_EQ(done({"listar", ".", "SUELTA"}), "COD\nb\na\n");
    EXPECT_EQ(refused({"listar", ".", "SUELTA", "--tag", "COD"}),
              "ambcp: la tabla SUELTA no tiene ningún tag «COD»; no tiene índice\n");
}

TEST_F(AmbcpListar, BlankValueOfAnOnlyColumnIsALine) {
    createTable(defineTable("SUELTA", {"COD C3"}), {{""}, {"a"}});
    EXPECT_EQ(done({"listar", ".", "SUELTA"}), "COD\n\"\"\na\n");
}

TEST_F(AmbcpListar, WhatCannotBeDoneSaysWhy) {
    EXPECT_EQ(refused({"listar", ".", "CALLES", "--tag", "NADA"}),
              "ambcp: la tabla CALLES no tiene ningún tag «NADA»; tiene VIA, NUM, ALTA, MAYUS\n");
    EXPECT_EQ(refused({"listar", ".", "OTRA"}), "ambcp: en la carpeta «.» no hay ninguna tabla «OTRA»\n");
    EXPECT_EQ(refused({"listar", ".", "../CALLES"}),
              "ambcp: en la carpeta «.» no hay ninguna tabla «../CALLES»\n");
    EXPECT_EQ(refused({"listar", "no", "CALLES"}), "ambcp: no existe la carpeta «no»\n");
    EXPECT_EQ(refused({"listar", ".", "CALLES", "--filtro", "VIA='Ł'"}),
              "ambcp: el filtro «VIA='Ł'» lleva caracteres que la tabla no puede guardar\n");
    refused({"listar", ".", "CALLES", "--filtro", "NADA=1"});
    refused({"listar", ".", "CALLES", "--filtro", "VIA='"});
    EXPECT_EQ(refused({"listar", ".", "CALLES", "--tag", "NUM", "--desde", "dos"}),
              "ambcp: columna NUM: «dos» no es un número\n");
    EXPECT_EQ(refused({"listar", ".", "CALLES", "--tag", "VIA", "--desde", "280 demasiado larga"}),
              "ambcp: la clave «280 demasiado larga» es más larga que las del tag VIA\n");
}

TEST_F(AmbcpListar, ReaderThatGoesAwayEndsItQuietly) {
    done({"crear", "muestra", "--muestra"});
    const Outcome run = shell("{ \"$AMBCP\" listar muestra POSTAL; echo $? >codigo; } | head -n 1");
    EXPECT_EQ(run.errors, "");
    EXPECT_EQ(content("codigo"), "0\n");
    EXPECT_EQ(run.output.substr(0, 8), "CODIGO1,");
}

TEST_F(AmbcpListar, FullOutputIsAFailure) {
    const Outcome run = shell("\"$AMBCP\" listar . CALLES >/dev/full");
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_EQ(run.errors.rfind("ambcp: no se puede escribir la salida", 0), 0U);
}

TEST_F(AmbcpListar, ClosedOutputNeverReachesATable) {
    const std::string before = content("CALLES.DBF");
    EXPECT_EQ(shell("\"$AMBCP\" listar . CALLES >&-").exitCode, 0);
    EXPECT_EQ(content("CALLES.DBF"), before);
}

TEST_F(AmbcpListar, AJournalThatAnotherUserHasPlantedChangesNothing) {
    if (geteuid() != 0) {
        GTEST_SKIP() << "wants root, to give a file to another user";
    }
    const std::string before = done({"listar", ".", "CALLES"}), journal = folder / "CALLES.AMJ";
    {
        const std::string now = dbase::bootIdentity();
        dbase::setBootIdentity("antes");
        const auto table = dbase::Table::open(folder / "CALLES.DBF");
        const std::span<const char> first = table->records().record(1).bytes;
        std::vector<char> changed(first.begin(), first.end());
        changed[1] = '9';
        dbase::RecordChange change;
        change.add(1, first, changed);
        dbase::Journal forged(dbase::journalBeside(folder / "CALLES.DBF"), table->schema());
        table->leave(); // which would remove it
        forged.begin(dbase::originOf(table->records()));
        forged.add({table->changeCounter() + 1, change.runs()}, true);
        dbase::setBootIdentity(now);
    }
    const std::string planted = content(journal);
    constexpr uid_t stranger = 50003;
    ASSERT_EQ(chown(journal.c_str(), stranger, stranger), 0);
    EXPECT_EQ(done({"listar", ".", "CALLES"}), before);
    EXPECT_EQ(content(journal), planted);
    EXPECT_NE(refused({"reindexar", ".", "CALLES"}).find("CALLES.AMJ: el diario es del usuario número 50003"),
              std::string::npos);
    ASSERT_TRUE(std::filesystem::remove(journal));
}

} // namespace
} // namespace ambcp::test
