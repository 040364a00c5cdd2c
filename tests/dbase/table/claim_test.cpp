// A table is created, replaced or removed by one program at a time, which undoes nothing but its own.
#include "dbase/table/table_claim.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include <unistd.h>

#include "dbase/support/ChildProcess.h"
#include "dbase/support/OtherUser.h"
#include "dbase/support/StoredTable.h"
#include "dbase/system/error.h"
#include "dbase/system/folders.h"
#include "dbase/table/table.h"
#include "dbase/table/table_creation.h"
#include "support/LockPatience.h"
#include "support/TemporaryFolder.h"

namespace {

using namespace dbase;
using namespace dbase::test;
namespace fs = std::filesystem;

class ClaimTest : public ::testing::Test {
protected:
    static TableDefinition definition() {
        return {.name = "NUEVA",
                .columns = {{"CODIGO", ColumnType::Character, 5, 0, 0}},
                .tags = {{.name = "CODIGO", .expression = "CODIGO"}}};
    }
    [[nodiscard]] std::string path() const { return folder_ / "NUEVA.DBF"; }
    [[nodiscard]] std::string claimFile() const { return folder_ / "NUEVA.AMC"; }
    void create(IfExists ifExists = IfExists::Refuse) const {
        createTable(folder_.path(), definition(), ifExists);
    }
    void addRow() const {
        const auto table = Table::open(path());
        table->append(makeRecord(table->schema(), {"28079"}), Durability::Disk);
    }
    [[nodiscard]] std::vector<std::string> files() const {
        std::vector<std::string> names;
        for (const fs::directory_entry& entry : fs::directory_iterator(folder_.path())) {
            names.push_back(entry.path().filename().string());
        }
        std::ranges::sort(names);
        return names;
    }

    TemporaryFolder folder_;
    const std::vector<std::string> onlyTable_{"NUEVA.DBF", "NUEVA.MDX"};
};

TEST_F(ClaimTest, ACreationWaitsForAnotherAndLeavesItsTable) {
    ChildProcess other([&](const ChildProcess::Link& link) {
        {
            const TableClaim claim(path());
            link.tell();
            link.await();
            createTable(claim, definition());
        }
        addRow();
        return 0;
    });
    other.await();
    EXPECT_FALSE(fs::exists(path()));
    other.tell();
    EXPECT_EQ(errorOf([&] { create(); }).code(), ErrorCode::Exists);
    EXPECT_EQ(other.join(), 0);
    EXPECT_EQ(Table::open(path())->records().recordCount(), 1U);
    EXPECT_EQ(files(), onlyTable_);
}

TEST_F(ClaimTest, AClaimThatIsNotReleasedInTimeIsAnErrorThatNamesTheTable) {
    const TableClaim claim(path());
    const ambrel::test::LockPatience patience(std::chrono::milliseconds(20));
    for (const IfExists ifExists : {IfExists::Refuse, IfExists::Replace}) {
        const Error error = errorOf([&] { create(ifExists); });
        EXPECT_EQ(error.code(), ErrorCode::LockTimeout);
        EXPECT_EQ(error.file(), path());
    }
    EXPECT_EQ(files(), std::vector<std::string>{"NUEVA.AMC"});
}

TEST_F(ClaimTest, TablesWhoseNamesDifferInLetterCaseShareAClaim) {
    const TableClaim claim(folder_ / "nueva.dbf");
    const ambrel::test::LockPatience patience(std::chrono::milliseconds(20));
    EXPECT_EQ(errorOf([&] { create(); }).code(), ErrorCode::LockTimeout);
}

TEST_F(ClaimTest, OneThatAKilledProgramLeftClaimsNothing) {
    ChildProcess killed([&](const ChildProcess::Link&) {
        const TableClaim claim(path());
        _exit(0);
        return 1;
    });
    ASSERT_EQ(killed.join(), 0);
    ASSERT_TRUE(fs::exists(claimFile()));
    create();
    EXPECT_EQ(files(), onlyTable_);
}

TEST_F(ClaimTest, APlantedLinkIsNotFollowed) {
    const std::string victim = folder_.write("victim", "untouched");
    fs::create_symlink(victim, claimFile());
    const Error error = errorOf([&] { create(); });
    EXPECT_EQ(error.code(), ErrorCode::AccessDenied);
    EXPECT_EQ(error.file(), path());
    EXPECT_NE(std::string(error.what()).find("NUEVA.AMC"), std::string::npos) << error.what();
    EXPECT_EQ(readFile(victim).size(), 9U);
    EXPECT_FALSE(fs::exists(path()));
}

TEST_F(ClaimTest, FilesThatAKilledCommandLeftAreRemovedByTheNextOne) {
    create();
    for (const char* const left :
         {"NUEVA.DBF.nuevo", "NUEVA.MDX.nuevo", "NUEVA.DBF.nuevo4711", "NUEVA.MDX.nuevo4711"}) {
        folder_.write(left, "half a table");
    }
    folder_.write("NUEVA.DBF.nuevo.txt", "somebody's own");
    folder_.write("VIEJA.DBF.nuevo", "another table's");
    create(IfExists::Replace);
    EXPECT_EQ(files(),
              (std::vector<std::string>{"NUEVA.DBF", "NUEVA.DBF.nuevo.txt", "NUEVA.MDX", "VIEJA.DBF.nuevo"}));
    EXPECT_EQ(findings(path()), "");
}

TEST_F(ClaimTest, ATemporaryFileThatIsALinkIsNotWrittenThrough) {
    create();
    const std::string victim = folder_.write("victim", "untouched");
    fs::create_symlink(victim, folder_ / "NUEVA.DBF.nuevo");
    create(IfExists::Replace);
    EXPECT_EQ(readFile(victim).size(), 9U);
    EXPECT_EQ(findings(path()), "");
    EXPECT_FALSE(fs::is_symlink(path()));
}

TEST_F(ClaimTest, ATableIsRemovedOnlyWhereNobodyHasItOpen) {
    create();
    const TableClaim claim(path());
    {
        const auto other = openInAnotherProcess(path());
        EXPECT_EQ(errorOf([&] { removeTable(claim); }).code(), ErrorCode::LockTimeout);
        other->tell();
        EXPECT_EQ(other->join(), 0);
    }
    EXPECT_TRUE(fs::exists(path()));
    removeTable(claim);
    EXPECT_EQ(files(), std::vector<std::string>{"NUEVA.AMC"});
    removeTable(claim);
}

TEST_F(ClaimTest, AFolderThatIsReadOnlyIsSaid) {
    if (!mayBecomeOthers()) {
        GTEST_SKIP() << wantsRoot;
    }
    fs::permissions(folder_.path(), fs::perms(0755));
    const std::string said = as({50001, 50001}, [&] {
        create();
        return std::string();
    });
    EXPECT_NE(said.find("NUEVA"), std::string::npos) << said;
    EXPECT_NE(said.find("no hay permiso"), std::string::npos) << said;
    EXPECT_TRUE(files().empty());
}

TEST_F(ClaimTest, OneThatAnotherMemberOfTheGroupLeftIsTakenOver) {
    if (!mayBecomeOthers()) {
        GTEST_SKIP() << wantsRoot;
    }
    for (const mode_t mode : {0770U, 02770U, 03770U}) {
        ASSERT_EQ(chown(folder_.path().c_str(), 0, 50100), 0);
        fs::permissions(folder_.path(), static_cast<fs::perms>(mode));
        EXPECT_EQ(as({50001, 50001, {50100}},
                     [&] { // the process ends without releasing it
                         static_cast<void>(std::make_unique<TableClaim>(path()).release());
                         return std::string();
                     }),
                  "");
        ASSERT_TRUE(fs::exists(claimFile()));
        EXPECT_EQ(as({50002, 50002, {50100}},
                     [&] {
                         refuseCreatingWhatMayExist();
                         const TableClaim claim(path());
                         return std::string("mine");
                     }),
                  "mine")
            << std::oct << mode;
        fs::remove(claimFile());
    }
}

} // namespace
