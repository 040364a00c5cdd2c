// Dropping the deleted rows of a table: all others stay, in their order, and whatever happens meanwhile
// leaves the old table or the new one.
#include "dbase/table/compaction.h"

#include <gtest/gtest.h>

#include <csignal>

#include <sys/wait.h>
#include <unistd.h>

#include "dbase/dbf/record_scan.h"
#include "dbase/support/StoredTable.h"
#include "dbase/system/error.h"
#include "support/TemporaryFolder.h"

namespace {

using namespace dbase;
using namespace dbase::test;

class CompactionTest : public ::testing::Test {
protected:
    CompactionTest() {
        createTable(
            folder_.path(),
            {.name = "CALLES",
             .columns = {{"NOMBRE", ColumnType::Character, 20, 0, 0}, {"NUM", ColumnType::Numeric, 6, 0, 0}},
             .tags = {{.name = "NOMBRE", .expression = "NOMBRE"},
                      {.name = "NUM", .expression = "NUM", .descending = true},
                      {.name = "UNICA", .expression = "SUBSTR(NOMBRE,1,7)", .unique = true},
                      {.name = "PARES", .expression = "NOMBRE", .condition = "NUM>50"}}});
        const auto table = Table::open(path());
        for (int i = 0; i < 100; ++i) {
            table->append(
                makeRecord(table->schema(), {"CALLE " + std::to_string(i * 37 % 100), std::to_string(i)}));
        }
    }
    ~CompactionTest() override { EXPECT_EQ(findings(path()), ""); }

    [[nodiscard]] std::string path() const { return folder_ / "CALLES.DBF"; }
    void deleteEvery(RecordNumber step) const {
        const auto table = Table::open(path());
        for (RecordNumber number = 1; number <= table->records().recordCount(); number += step) {
            table->erase(number, storedRecord(*table, number));
        }
    }
    /// The rows that are not deleted, in their order.
    [[nodiscard]] std::vector<Bytes> rows() const {
        const TableFile table(openFile(path(), OpenMode::ReadOnly));
        std::vector<Bytes> found;
        RecordScan scan(table);
        while (const RecordView* record = scan.next()) {
            if (!record->isDeleted()) {
                found.emplace_back(record->bytes.begin(), record->bytes.end());
            }
        }
        return found;
    }
    [[nodiscard]] std::vector<Bytes> files() const {
        return {readFile(path()), readFile(folder_ / "CALLES.MDX")};
    }

    TemporaryFolder folder_;
};

TEST_F(CompactionTest, DropsTheDeletedRowsAndKeepsTheOrderOfTheOthers) {
    deleteEvery(3);
    const std::vector<Bytes> before = rows();
    const Compaction result = compactTable(path());
    EXPECT_EQ(result.kept, 66U);
    EXPECT_EQ(result.dropped, 34U);
    EXPECT_EQ(rows(), before);
    const auto table = Table::open(path());
    EXPECT_EQ(table->records().recordCount(), 66U);
    EXPECT_EQ(table->tagNames(), (std::vector<std::string>{"NOMBRE", "NUM", "UNICA", "PARES"}));
    EXPECT_EQ(order(*table, "NUM").size(), 66U);
    EXPECT_EQ(order(*table, "NUM").front(), 66U);
    EXPECT_EQ(table->findTag("PARES")->definition.condition, "NUM>50");
    EXPECT_TRUE(table->findTag("UNICA")->definition.unique);
}

TEST_F(CompactionTest, ATableOfDeletedRowsAloneBecomesEmpty) {
    deleteEvery(1);
    EXPECT_EQ(compactTable(path()).dropped, 100U);
    EXPECT_TRUE(rows().empty());
    const auto table = Table::open(path());
    EXPECT_EQ(table->append(makeRecord(table->schema(), {"NUEVA", "1"})), 1U);
}

TEST_F(CompactionTest, ATableWithoutDeletedRowsStaysAsItIs) {
    const std::vector<Bytes> before = files();
    const Compaction result = compactTable(path());
    EXPECT_EQ(result.kept, 100U);
    EXPECT_EQ(result.dropped, 0U);
    EXPECT_EQ(files(), before);
}

TEST_F(CompactionTest, ATableWithoutTagsIsCompactedToo) {
    createTable(folder_.path(),
                {.name = "SUELTA", .columns = {{"NOMBRE", ColumnType::Character, 20, 0, 0}}, .tags = {}});
    const std::string path = folder_ / "SUELTA.DBF";
    {
        const auto table = Table::open(path);
        for (const char* name : {"UNO", "DOS", "TRES"}) {
            table->append(makeRecord(table->schema(), {name}));
        }
        table->erase(2, storedRecord(*table, 2));
    }
    EXPECT_EQ(compactTable(path).dropped, 1U);
    const auto table = Table::open(path);
    EXPECT_EQ(valueOf(table->schema(), storedRecord(*table, 2), "NOMBRE"), "TRES");
    EXPECT_EQ(findings(path), "");
}

TEST_F(CompactionTest, ATableThatAnotherStationHasOpenIsRefusedAndStaysAsItIs) {
    deleteEvery(2);
    const std::vector<Bytes> before = files();
    const auto other = openInAnotherProcess(path());
    const Error error = errorOf([&] { compactTable(path()); });
    EXPECT_EQ(error.code(), ErrorCode::LockTimeout);
    EXPECT_NE(std::string(error.what()).find("abierta"), std::string::npos) << error.what();
    EXPECT_EQ(files(), before);
}

TEST_F(CompactionTest, ATableThatThisProgramHasOpenIsRefusedAndStaysAsItIs) {
    deleteEvery(2);
    const std::vector<Bytes> before = files();
    const auto open = Table::open(path());
    EXPECT_EQ(errorOf([&] { compactTable(path()); }).code(), ErrorCode::LockTimeout);
    EXPECT_EQ(files(), before);
}

TEST_F(CompactionTest, KilledAtAnyMomentItLeavesEveryRow) {
    deleteEvery(3);
    const std::vector<Bytes> before = rows();
    for (int tags = 0; tags < 4; ++tags) { // while it builds each of them
        const pid_t child = fork();
        if (child == 0) {
            int steps = tags;
            compactTable(path(), [&](std::uint64_t, std::uint64_t) {
                if (steps-- == 0) {
                    raise(SIGKILL);
                }
            });
            _exit(0);
        }
        int status = 0;
        waitpid(child, &status, 0);
        EXPECT_EQ(rows(), before);
        EXPECT_EQ(findings(path()), "");
    }
    compactTable(path());
    EXPECT_EQ(rows(), before);
}

} // namespace
