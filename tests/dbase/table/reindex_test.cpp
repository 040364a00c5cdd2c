// Reindexes a table that was left in the middle of a change, or that other programs are using.
#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <string>
#include <utility>

#include "dbase/lock/locks.h"
#include "dbase/support/StoredTable.h"
#include "dbase/system/bytes.h"
#include "dbase/system/databases.h"
#include "dbase/system/error.h"
#include "dbase/table/bulk_loader.h"
#include "dbase/table/check.h"
#include "dbase/table/table.h"
#include "dbase/table/table_definition.h"
#include "recovery_fixture.h"
#include "support/TemporaryFolder.h"

namespace {

using namespace dbase;
using namespace dbase::test;

/// The table in files of its own.
class ReindexTest : public RecoveryTest {
protected:
    void writeFiles() const {
        writeFile(file_, tableBytes());
        writeFile(folder_ / "RECUPERA.MDX", indexBytes());
    }
    /// Leaves the state of a machine that stopped while a program had the table open.
    void leaveJournalOfAnotherStart() const {
        const std::string thisStart = bootIdentity();
        setBootIdentity("another start");
        Journal(journalBeside(file_), schema_).begin({});
        setBootIdentity(thisStart);
    }

    const TemporaryFolder folder_;
    const std::string file_ = folder_ / "RECUPERA.DBF";
};

/// Like ReindexTest, with a first tag that computes its keys.
class ReindexComputedKeys : public RecoveryTest {
protected:
    ReindexComputedKeys() : RecoveryTest({{.name = "MAYUS", .expression = "UPPER(NOMBRE)"}}) {}

    const TemporaryFolder folder_;
    const std::string file_ = folder_ / "RECUPERA.DBF";
};

TEST_F(ReindexComputedKeys, RecoversFromTheJournalOfAStoppedMachine) {
    writeFile(file_, tableBytes());
    writeFile(folder_ / "RECUPERA.MDX", indexBytes());
    const std::string thisStart = bootIdentity();
    setBootIdentity("another start");
    Journal(journalBeside(file_), schema_).begin({});
    setBootIdentity(thisStart);
    reindexTable(file_);
    EXPECT_EQ(findings(file_), "");
    EXPECT_EQ(Table::open(file_)->records().recordCount(), 100U);
}

TEST_F(ReindexTest, KeepsWhatACutTableStillHolds) {
    tableBytes().erase(tableBytes().end() - 500, tableBytes().end());
    writeFiles();
    EXPECT_NE(findings(file_), "");
    reindexTable(file_);
    EXPECT_EQ(findings(file_), "");
    EXPECT_EQ(Table::open(file_)->records().recordCount(), 86U);
}

TEST_F(ReindexTest, AdoptsCompleteRecordsThatDoNotCountYet) {
    const std::uint32_t count = load32(tableBytes().data() + 4);
    appendWithoutIndex(100);
    appendWithoutIndex(101);
    store32(tableBytes().data() + 4, count);
    writeFiles();
    reindexTable(file_);
    EXPECT_EQ(findings(file_), "");
    EXPECT_EQ(Table::open(file_)->records().recordCount(), 102U);
}

TEST_F(ReindexTest, AfterAStopOfTheMachineBlanksARowThatNeverReachedTheDisk) {
    std::fill(tableBytes().end() - 1 - schema_.recordLength, tableBytes().end() - 1, '\0');
    writeFiles();
    leaveJournalOfAnotherStart();
    reindexTable(file_);
    EXPECT_EQ(findings(file_), "");
    const auto table = Table::open(file_);
    ASSERT_EQ(table->records().recordCount(), 100U);
    Bytes blank(schema_.recordLength, ' ');
    blank.front() = '*';
    EXPECT_EQ(storedRecord(*table, 100), blank);
}

/// A foreign program writes the row first and counts it afterwards.
TEST_F(ReindexTest, LeavesTheRowThatAnotherProgramIsAddingRightNow) {
    const std::uint32_t count = load32(tableBytes().data() + 4);
    appendWithoutIndex(100);
    store32(tableBytes().data() + 4, count);
    writeFiles();
    const auto writer = openFile(file_, OpenMode::ReadWrite);
    ASSERT_TRUE(writer->tryLock(appendLock, LockKind::Exclusive));
    reindexTable(file_);
    std::array<char, 4> counted{};
    writer->read(4, counted);
    EXPECT_EQ(load32(counted.data()), count) << "it is the other program's to set";
    store32(counted.data(), count + 1);
    writer->write(4, counted);
    writer->unlock(appendLock);
    const auto table = Table::open(file_);
    ASSERT_EQ(table->records().recordCount(), count + 1);
    EXPECT_EQ(storedRecord(*table, count + 1), row(100));
    EXPECT_EQ(findings(file_), "");
}

TEST_F(ReindexTest, KeepsTheRowThatAnotherProgramAddsMeanwhile) {
    constexpr RecordNumber rows = 20'000; // enough for a progress report in the middle
    createTable(
        folder_.path(),
        {.name = "RECUPERA",
         .columns = {{"NOMBRE", ColumnType::Character, 30, 0, 0}, {"NUM", ColumnType::Numeric, 6, 0, 0}},
         .tags = {{.name = "NOMBRE", .expression = "NOMBRE"}, {.name = "NUM", .expression = "NUM"}}});
    {
        BulkLoader loader(file_, BulkLoader::Mode::Append);
        for (RecordNumber i = 0; i < rows; ++i) {
            loader.add(row(static_cast<int>(i)));
        }
        loader.finish();
    }
    bool isAdded = false;
    reindexTable(file_, {}, [&](std::uint64_t, std::uint64_t) {
        if (!std::exchange(isAdded, true)) {
            TableFile other(openFile(file_, OpenMode::ReadWrite));
            const FileLock appending(other.file(), appendLock, LockKind::Exclusive);
            other.writeTail(rows + 1, row(rows));
            other.setCount(rows + 1);
        }
    });
    const auto table = Table::open(file_);
    ASSERT_EQ(table->records().recordCount(), rows + 1);
    EXPECT_EQ(storedRecord(*table, rows + 1), row(rows));
    for (const std::string& tag : table->tagNames()) {
        EXPECT_EQ(order(*table, tag).size(), rows + 1) << tag;
    }
    EXPECT_EQ(findings(file_), "");
}

TEST_F(ReindexTest, AfterAStopOfTheMachineLeavesItsJournalUntilItsEnd) {
    writeFiles();
    leaveJournalOfAnotherStart();
    const auto isThere = [&] { return Journal(journalBeside(file_), schema_).isOfAnotherStart(); };
    bool wasThere = true;
    reindexTable(file_, {}, [&](std::uint64_t, std::uint64_t) { wasThere = wasThere && isThere(); });
    EXPECT_TRUE(wasThere) << "should this end early, nobody else would know of the stop";
    EXPECT_FALSE(std::filesystem::exists(folder_ / "RECUPERA.AMJ"));
}

/// A crash of the machine in between would leave changed records without a trace.
TEST_F(ReindexTest, WithoutAJournalTouchesNoRecord) {
    const std::uint32_t count = load32(tableBytes().data() + 4);
    appendWithoutIndex(100);
    store32(tableBytes().data() + 4, count);
    writeFiles();
    const auto workstation = openFile(file_, OpenMode::ReadWrite);
    ASSERT_TRUE(workstation->tryLock(presenceLock, LockKind::Shared));
    std::filesystem::create_directory(folder_ / "RECUPERA.AMJ"); // and none can be created
    EXPECT_THROW(reindexTable(file_), Error);
    EXPECT_EQ(readFile(file_), tableBytes());
}

/// Otherwise a table that is usable without tags could no longer be opened.
TEST_F(ReindexTest, WithTagsThatTheTableCannotHaveMakesNoIndex) {
    writeFile(file_, tableBytes());
    const Error error =
        errorOf([&] { reindexTable(file_, {{.name = "OTRO", .expression = "OTRACOLUMNA"}}); });
    EXPECT_EQ(error.code(), ErrorCode::BadExpression);
    EXPECT_FALSE(findIndexFile(file_));
    EXPECT_EQ(readFile(file_), tableBytes());
}

TEST_F(ReindexTest, MakesAMissingIndexWithTheTablesPermissionsAndThroughNoLink) {
    writeFiles();
    const std::string index = folder_ / "RECUPERA.MDX", victim = folder_ / "victim";
    ASSERT_TRUE(std::filesystem::remove(index));
    std::filesystem::permissions(file_, std::filesystem::perms(0660));
    std::filesystem::create_symlink(victim, index);
    const std::vector<TagDefinition> tags{{.name = "NOMBRE", .expression = "NOMBRE"}};
    EXPECT_EQ(errorOf([&] { reindexTable(file_, tags); }).file(), index);
    EXPECT_FALSE(std::filesystem::exists(victim));
    ASSERT_TRUE(std::filesystem::remove(index));
    reindexTable(file_, tags);
    EXPECT_EQ(std::filesystem::status(index).permissions(), std::filesystem::perms(0660));
    EXPECT_EQ(findings(file_), "");
}

TEST_F(ReindexTest, WithAJournalThatIsALinkTouchesNothing) {
    writeFiles();
    const std::string journal = folder_ / "RECUPERA.AMJ", index = folder_ / "RECUPERA.MDX";
    std::filesystem::create_symlink(folder_ / "victim", journal);
    const Bytes records = readFile(file_), tags = readFile(index);
    EXPECT_EQ(errorOf([&] { reindexTable(file_); }).file(), journal);
    EXPECT_EQ(readFile(file_), records);
    EXPECT_EQ(readFile(index), tags);
    EXPECT_FALSE(std::filesystem::exists(folder_ / "victim"));
}

} // namespace
