// ambcp on a table that ends before the last record its header announces.

#include "AmbcpTest.h"

#include <filesystem>

#include <unistd.h>

#include "dbase/support/ChildProcess.h"
#include "dbase/support/StoredTable.h"
#include "dbase/table/table.h"

namespace ambcp::test {
namespace {

namespace fs = std::filesystem;

constexpr const char* cutPostal =
    "./POSTAL.DBF: la tabla está cortada: dice tener 3 registros y hay 1 completo; "
    "recupere la copia de seguridad; \"ambcp reindexar\" se queda con los "
    "completos";

/// POSTAL announces three records and holds one and part of another.
class AmbcpCutTable : public AmbcpTest {
protected:
    AmbcpCutTable() {
        leaveUnchecked();
        done({"crear", "."});
        folder.write("filas.csv", "CODIGO1,VIA\n28000001,ALCALA\n28000002,MAYOR\n28000003,ZURBANO\n");
        done({"cargar", ".", "POSTAL", "filas.csv"});
        whole_ = content("POSTAL.DBF");
        const std::uintmax_t record = (whole_.size() - 1 - headerLength()) / 3;
        fs::resize_file(folder / "POSTAL.DBF", headerLength() + record + record / 2);
    }

    std::size_t headerLength() const {
        return static_cast<unsigned char>(whole_[8]) + 256U * static_cast<unsigned char>(whole_[9]);
    }

    /// Expects a question to be refused with 1 and the one line, and the files to be unchanged.
    void expectRefusal(const std::vector<std::string>& arguments) const {
        const std::string records = content("POSTAL.DBF"), index = content("POSTAL.MDX");
        const Outcome run = ambcp(arguments);
        EXPECT_EQ(run.exitCode, 1);
        EXPECT_EQ(run.output, "");
        EXPECT_EQ(run.errors, "ambcp: " + std::string(cutPostal) + '\n');
        EXPECT_EQ(content("POSTAL.DBF"), records);
        EXPECT_EQ(content("POSTAL.MDX"), index);
        EXPECT_FALSE(fs::exists(folder / "POSTAL.AMJ"));
    }

    /// One of our programs adds the rows after the first, and dies before all of them are on the disk.
    void addRowsAndDie() const {
        const std::string cut = content("POSTAL.DBF");
        folder.write("fila.csv", "CODIGO1,VIA\n28000001,ALCALA\n");
        done({"cargar", ".", "POSTAL", "fila.csv", "--reemplazar"});
        addRowAndDie();
        addRowAndDie();
        fs::resize_file(folder / "POSTAL.DBF", cut.size());
    }

    /// One of our programs adds a row, and dies with the table open.
    void addRowAndDie() const {
        dbase::test::ChildProcess child([&](const dbase::test::ChildProcess::Link&) -> int {
            const auto table = dbase::Table::open(folder / "POSTAL.DBF");
            const auto record = dbase::test::storedRecord(*table, 1);
            static_cast<void>(table->append(record, dbase::Durability::Disk));
            _exit(0);
        });
        EXPECT_EQ(child.join(), 0);
    }

    std::string whole_; // bytes of the table before it was cut
};

TEST_F(AmbcpCutTable, QuestionsAreRefusedAndChangeNothing) {
    expectRefusal({"listar", ".", "POSTAL"});
    expectRefusal({"buscar", ".", "POSTAL", "CODIGO1", "CODIGO1=28000001"});
    expectRefusal({"direccion", ".", "--municipio", "MADRID", "--via", "ALCALA", "--numero", "1"});
}

TEST_F(AmbcpCutTable, TakesNoMoreRowsUnlessAllAreReplaced) {
    expectRefusal({"cargar", ".", "POSTAL", "filas.csv"});
    done({"cargar", ".", "POSTAL", "filas.csv", "--reemplazar"});
    EXPECT_EQ(ambcp({"comprobar", ".", "POSTAL"}).exitCode, 0);
}

TEST_F(AmbcpCutTable, OneWithoutIndexIsRefusedToo) {
    fs::remove(folder / "POSTAL.MDX");
    expectRefusal({"listar", ".", "POSTAL"});
}

TEST_F(AmbcpCutTable, CopyThatWasStillUnderWayIsWholeAfterAQuestion) {
    expectRefusal({"listar", ".", "POSTAL"});
    folder.write("POSTAL.DBF", whole_);
    EXPECT_EQ(done({"comprobar", ".", "POSTAL"}), "POSTAL: 3 registros, 3 tags: correcta\n");
    EXPECT_NE(done({"listar", ".", "POSTAL"}).find("ZURBANO"), std::string::npos);
}

TEST_F(AmbcpCutTable, TheOtherTablesAnswer) { done({"listar", ".", "PROVIN"}); }

TEST_F(AmbcpCutTable, JournalBesideItLetsTheQuestionRecoverIt) {
    addRowsAndDie();
    EXPECT_NE(done({"listar", ".", "POSTAL", "--tag", "VIA"}).find("ALCALA"), std::string::npos);
    done({"comprobar", ".", "POSTAL"});
}

TEST_F(AmbcpCutTable, AnEmptyJournalBesideItCountsAsNone) {
    folder.write("POSTAL.AMJ", "");
    EXPECT_EQ(ambcp({"listar", ".", "POSTAL"}).errors, "ambcp: " + std::string(cutPostal) + '\n');
    fs::remove(folder / "POSTAL.AMJ");
}

// All three records were on the disk when that journal began: a copy is still under way, or was cut.
TEST_F(AmbcpCutTable, JournalThatBeganWithMoreRecordsDoesNotExplainIt) {
    const std::string cut = content("POSTAL.DBF");
    folder.write("POSTAL.DBF", whole_);
    addRowAndDie();
    const std::string journal = content("POSTAL.AMJ");
    folder.write("POSTAL.DBF", cut);
    EXPECT_EQ(ambcp({"listar", ".", "POSTAL"}).errors, "ambcp: " + std::string(cutPostal) + '\n');
    EXPECT_EQ(content("POSTAL.DBF"), cut);
    EXPECT_EQ(content("POSTAL.AMJ"), journal);
}

// As in a folder of links to the tables of a server.
TEST_F(AmbcpCutTable, JournalBesideTheTableOfALinkLetsTheQuestionRecoverIt) {
    fs::create_directory(folder / "enlaces");
    fs::create_symlink("../POSTAL.DBF", folder / "enlaces/POSTAL.DBF");
    EXPECT_EQ(ambcp({"listar", "enlaces", "POSTAL", "--tag", "VIA"}).exitCode, 1);
    addRowsAndDie();
    EXPECT_NE(done({"listar", "enlaces", "POSTAL", "--tag", "VIA"}).find("ALCALA"), std::string::npos);
}

TEST_F(AmbcpCutTable, CheckSaysItOnceInsteadOfForEachTag) {
    const std::string records = content("POSTAL.DBF"), index = content("POSTAL.MDX");
    const Outcome run = ambcp({"comprobar", ".", "POSTAL"});
    EXPECT_EQ(run.exitCode, 1);
    const std::string line = cutPostal;
    const std::string place = "./POSTAL.DBF: ";
    EXPECT_EQ(run.output, place + "cabecera: " + line.substr(place.size()) +
                              "\nPOSTAL: 1 registro, 3 tags: 1 problema\n");
    EXPECT_EQ(content("POSTAL.DBF"), records);
    EXPECT_EQ(content("POSTAL.MDX"), index);
}

TEST_F(AmbcpCutTable, ReindexingGoesOnAndSaysHowManyRecordsAreGone) {
    EXPECT_EQ(done({"reindexar", ".", "POSTAL"}),
              "POSTAL: índice rehecho con 1 registro; de los que decía la cabecera, 2 no estaban.\n");
    EXPECT_EQ(done({"comprobar", ".", "POSTAL"}), "POSTAL: 1 registro, 3 tags: correcta\n");
    EXPECT_EQ(done({"reindexar", ".", "POSTAL"}), "POSTAL: índice rehecho.\n");
}

} // namespace
} // namespace ambcp::test
