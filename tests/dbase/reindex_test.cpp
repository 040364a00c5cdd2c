// Reindexing a table that somebody left in the middle of something, or is working on.
#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <string>
#include <utility>

#include "dbase/bulk_loader.h"
#include "dbase/bytes.h"
#include "dbase/check.h"
#include "dbase/databases.h"
#include "dbase/error.h"
#include "dbase/locks.h"
#include "dbase/table.h"
#include "dbase/table_definition.h"
#include "recovery_fixture.h"
#include "support/StoredTable.h"
#include "support/TemporaryFolder.h"

namespace {

using namespace dbase;
using namespace dbase::test;

TEST_F(RecoveryTest, ReindexingKeepsWhatACutTableStillHolds) {
    tableBytes().resize(tableBytes().size() - 500);
    const TemporaryFolder folder;
    writeFile(folder / "RECUPERA.DBF", tableBytes());
    writeFile(folder / "RECUPERA.MDX", indexBytes());
    EXPECT_NE(findings(folder / "RECUPERA.DBF"), "");
    reindexTable(folder / "RECUPERA.DBF");
    EXPECT_EQ(findings(folder / "RECUPERA.DBF"), "");
    EXPECT_EQ(Table::open(folder / "RECUPERA.DBF")->records().recordCount(), 86U);
}

TEST_F(RecoveryTest, ReindexingAdoptsCompleteRecordsThatDoNotCountYet) {
    const std::uint32_t count = load32(tableBytes().data() + 4);
    appendWithoutIndex(100);
    appendWithoutIndex(101);
    store32(tableBytes().data() + 4, count);
    const TemporaryFolder folder;
    writeFile(folder / "RECUPERA.DBF", tableBytes());
    writeFile(folder / "RECUPERA.MDX", indexBytes());
    reindexTable(folder / "RECUPERA.DBF");
    EXPECT_EQ(findings(folder / "RECUPERA.DBF"), "");
    EXPECT_EQ(Table::open(folder / "RECUPERA.DBF")->records().recordCount(), 102U);
}

TEST_F(RecoveryTest, ReindexingAfterAStopOfTheMachineBlanksARowThatNeverReachedTheDisk) {
    std::fill(tableBytes().end() - 1 - schema_.recordLength, tableBytes().end() - 1, '\0');
    const TemporaryFolder folder;
    writeFile(folder / "RECUPERA.DBF", tableBytes());
    writeFile(folder / "RECUPERA.MDX", indexBytes());
    const std::string thisStart = bootIdentity();
    setBootIdentity("another start");
    static_cast<void>(Journal(journalBeside(folder / "RECUPERA.DBF"), schema_).begin());
    setBootIdentity(thisStart);
    reindexTable(folder / "RECUPERA.DBF");
    EXPECT_EQ(findings(folder / "RECUPERA.DBF"), "");
    const auto table = Table::open(folder / "RECUPERA.DBF");
    ASSERT_EQ(table->records().recordCount(), 100U);
    Bytes blank(schema_.recordLength, ' ');
    blank.front() = '*';
    EXPECT_EQ(storedRecord(*table, 100), blank);
}

/// A foreign program writes the row first and counts it afterwards.
TEST_F(RecoveryTest, ReindexingLeavesTheRowThatAnotherProgramIsAddingRightNow) {
    const std::uint32_t count = load32(tableBytes().data() + 4);
    appendWithoutIndex(100);
    store32(tableBytes().data() + 4, count);
    const TemporaryFolder folder;
    writeFile(folder / "RECUPERA.DBF", tableBytes());
    writeFile(folder / "RECUPERA.MDX", indexBytes());
    const auto writer = openFile(folder / "RECUPERA.DBF", OpenMode::ReadWrite);
    ASSERT_TRUE(writer->tryLock(appendLock, LockKind::Exclusive));
    reindexTable(folder / "RECUPERA.DBF");
    std::array<char, 4> counted{};
    writer->read(4, counted);
    EXPECT_EQ(load32(counted.data()), count) << "it is the other program's to set";
    store32(counted.data(), count + 1);
    writer->write(4, counted);
    writer->unlock(appendLock);
    const auto table = Table::open(folder / "RECUPERA.DBF");
    ASSERT_EQ(table->records().recordCount(), count + 1);
    EXPECT_EQ(storedRecord(*table, count + 1), row(100));
    EXPECT_EQ(findings(folder / "RECUPERA.DBF"), "");
}

TEST_F(RecoveryTest, ReindexingKeepsTheRowThatAnotherProgramAddsMeanwhile) {
    constexpr RecordNumber rows = 20'000; // enough for a word of progress in the middle
    const TemporaryFolder folder;
    const std::string path = folder / "RECUPERA.DBF";
    createTable(
        folder.path(),
        {.name = "RECUPERA",
         .columns = {{"NOMBRE", ColumnType::Character, 30, 0, 0}, {"NUM", ColumnType::Numeric, 6, 0, 0}},
         .tags = {{.name = "NOMBRE", .expression = "NOMBRE"}, {.name = "NUM", .expression = "NUM"}}});
    {
        BulkLoader loader(path, BulkLoader::Mode::Append);
        for (RecordNumber i = 0; i < rows; ++i)
            loader.add(row(static_cast<int>(i)));
        loader.finish();
    }
    bool isAdded = false;
    reindexTable(path, {}, [&](std::uint64_t, std::uint64_t) {
        if (!std::exchange(isAdded, true)) {
            TableFile other(openFile(path, OpenMode::ReadWrite));
            const FileLock appending(other.file(), appendLock, LockKind::Exclusive);
            other.writeBehind(rows + 1, row(rows));
            other.setCount(rows + 1);
        }
    });
    const auto table = Table::open(path);
    ASSERT_EQ(table->records().recordCount(), rows + 1);
    EXPECT_EQ(storedRecord(*table, rows + 1), row(rows));
    for (const std::string& tag : table->tagNames())
        EXPECT_EQ(order(*table, tag).size(), rows + 1) << tag;
    EXPECT_EQ(findings(path), "");
}

TEST_F(RecoveryTest, ReindexingAfterAStopOfTheMachineLeavesItsJournalUntilItsEnd) {
    const TemporaryFolder folder;
    writeFile(folder / "RECUPERA.DBF", tableBytes());
    writeFile(folder / "RECUPERA.MDX", indexBytes());
    const std::string thisStart = bootIdentity();
    setBootIdentity("another start");
    static_cast<void>(Journal(journalBeside(folder / "RECUPERA.DBF"), schema_).begin());
    setBootIdentity(thisStart);
    const auto isThere = [&] {
        return Journal(journalBeside(folder / "RECUPERA.DBF"), schema_).isOfAnotherStart();
    };
    bool wasThere = true;
    reindexTable(folder / "RECUPERA.DBF", {},
                 [&](std::uint64_t, std::uint64_t) { wasThere = wasThere && isThere(); });
    EXPECT_TRUE(wasThere) << "should this end early, nobody else would know of the stop";
    EXPECT_FALSE(std::filesystem::exists(folder / "RECUPERA.AMJ"));
}

/// Else a table that could be used without tags could not be opened any more.
TEST_F(RecoveryTest, ReindexingWithTagsThatTheTableCannotHaveMakesNoIndex) {
    const TemporaryFolder folder;
    writeFile(folder / "RECUPERA.DBF", tableBytes());
    const Error error = errorOf(
        [&] { reindexTable(folder / "RECUPERA.DBF", {{.name = "OTRO", .expression = "OTRACOLUMNA"}}); });
    EXPECT_EQ(error.code(), ErrorCode::BadExpression);
    EXPECT_FALSE(findIndexFile(folder / "RECUPERA.DBF"));
    EXPECT_EQ(readFile(folder / "RECUPERA.DBF"), tableBytes());
}

} // namespace
