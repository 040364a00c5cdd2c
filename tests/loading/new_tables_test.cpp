// The five tables are created together, or none of them.
#include "loading/new_tables.h"

#include "support/TableTest.h"

#include <filesystem>

#include "dbase/dataset/dataset.h"
#include "dbase/support/ChildProcess.h"
#include "dbase/support/StoredTable.h"
#include "dbase/table/table_claim.h"
#include "loading/failure.h"
#include "support/LockPatience.h"

namespace loading {
namespace {

namespace fs = std::filesystem;

class NewTables : public ambrel::test::TableTest {
protected:
    std::size_t filesIn(const std::string& path) const {
        return static_cast<std::size_t>(
            std::distance(fs::directory_iterator(path), fs::directory_iterator()));
    }
};

TEST_F(NewTables, AreFiveWithTheirIndexes) {
    createPostalTables(folder.path(), dbase::IfExists::Refuse);
    EXPECT_EQ(filesIn(folder.path()), 10U);
}

TEST_F(NewTables, FillsEachTableAfterItsCreation) {
    std::string names;
    createPostalTables(folder.path(), dbase::IfExists::Refuse,
                       [&](const std::string& name, const std::string& file) {
                           EXPECT_TRUE(fs::exists(file));
                           names += name + ' ';
                       });
    EXPECT_EQ(names, "MUNICIPI POSTAL PROVIN TIPO_VIA MUNICIMJ ");
}

TEST_F(NewTables, NothingIsCreatedBesideAnExistingTable) {
    folder.write("tipo_via.dbf", "x");
    leaveUnchecked();
    EXPECT_THROW(createPostalTables(folder.path(), dbase::IfExists::Refuse), Failure);
    EXPECT_EQ(filesIn(folder.path()), 1U);
}

TEST_F(NewTables, AnIndexThatAKilledCreationLeftIsTakenOver) {
    folder.write("POSTAL.MDX", "x");
    createPostalTables(folder.path(), dbase::IfExists::Refuse);
    EXPECT_EQ(filesIn(folder.path()), 10U);
}

/// What another process makes of a creation in the same folder.
std::string createdByAnother(const std::string& path) {
    std::string said;
    dbase::test::ChildProcess other([&](const dbase::test::ChildProcess::Link& link) {
        const ambrel::test::LockPatience patience(std::chrono::milliseconds(20));
        try {
            createPostalTables(path, dbase::IfExists::Refuse);
            link.send("created");
        } catch (const std::exception& error) {
            link.send(error.what());
        }
        return 0;
    });
    said = other.receive();
    other.join();
    return said;
}

TEST_F(NewTables, ASecondCreationMeanwhileDisturbsNothing) {
    std::string said;
    createPostalTables(folder.path(), dbase::IfExists::Refuse,
                       [&](const std::string& name, const std::string& file) {
                           dbase::Dataset table("DB", name);
                           table.open();
                           table.append();
                           table.post();
                           if (name == "POSTAL") {
                               EXPECT_TRUE(file.ends_with("POSTAL.DBF"));
                               said = createdByAnother(folder.path());
                           }
                       });
    EXPECT_NE(said.find("ya hay"), std::string::npos) << said;
    EXPECT_EQ(filesIn(folder.path()), 10U);
    for (const char* const name : {"MUNICIPI", "POSTAL", "PROVIN", "TIPO_VIA", "MUNICIMJ"}) {
        dbase::Dataset table("DB", name);
        table.open();
        EXPECT_FALSE(table.isEmpty()) << name;
    }
}

TEST_F(NewTables, ASecondCreationWaitsForTheFirstBeforeItLooks) {
    const dbase::TableClaim claim(folder / "MUNICIPI.DBF");
    const std::string said = createdByAnother(folder.path());
    EXPECT_NE(said.find("MUNICIPI.DBF"), std::string::npos) << said;
    EXPECT_EQ(filesIn(folder.path()), 1U) << "the claim";
}

TEST_F(NewTables, ANewTableThatAnotherProgramUsesAlreadyStaysWhenTheRestFails) {
    std::unique_ptr<dbase::test::ChildProcess> other;
    const auto fail = [&](const std::string& name, const std::string& file) {
        if (name == "MUNICIPI") {
            other = dbase::test::openInAnotherProcess(file);
        } else if (name == "PROVIN") {
            throw Failure("lleno");
        }
    };
    EXPECT_THROW(createPostalTables(folder.path(), dbase::IfExists::Refuse, fail), Failure);
    EXPECT_EQ(filesIn(folder.path()), 2U);
    EXPECT_TRUE(fs::exists(folder / "MUNICIPI.DBF"));
    other->tell();
    EXPECT_EQ(other->join(), 0);
}

TEST_F(NewTables, AFailureHalfWayLeavesNoNewTable) {
    const auto failAtThird = [](const std::string& name, const std::string&) {
        if (name == "PROVIN") {
            throw Failure("lleno");
        }
    };
    EXPECT_THROW(createPostalTables(folder / "a/b", dbase::IfExists::Refuse, failAtThird), Failure);
    EXPECT_EQ(filesIn(folder.path()), 0U);
}

TEST_F(NewTables, ATableInUseKeepsAllFromBeingReplaced) {
    createPostalTables(folder.path(), dbase::IfExists::Refuse);
    dbase::Dataset first("DB", "MUNICIPI"), last("DB", "MUNICIMJ");
    first.open();
    first.append();
    first.post();
    first.close();
    last.open();
    EXPECT_THROW(createPostalTables(folder.path(), dbase::IfExists::Replace), std::exception);
    first.open();
    EXPECT_FALSE(first.isEmpty());
}

TEST_F(NewTables, AFileInPlaceOfTheFolderIsAFailure) {
    const std::string file = folder.write("datos", "x");
    EXPECT_THROW(createPostalTables(file, dbase::IfExists::Refuse), Failure);
    EXPECT_THROW(createPostalTables(file + "/mas", dbase::IfExists::Refuse), Failure);
}

} // namespace
} // namespace loading
