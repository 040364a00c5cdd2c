// Long runs of deleted rows: a walk steps over those that it knows, and never over a row that is there.
#include <gtest/gtest.h>

#include <random>
#include <set>

#include "dbase/dataset/dataset.h"
#include "dbase/dataset/row_order.h"
#include "dbase/support/StoredTable.h"
#include "dbase/system/databases.h"
#include "support/TemporaryFolder.h"

namespace {

using namespace dbase;
using namespace dbase::test;

const TableDefinition keys{
    .name = "CLAVES",
    .columns = {{"K", ColumnType::Character, 4, 0, 0}, {"N", ColumnType::Numeric, 6, 0, 0}},
    .tags = {{.name = "K", .expression = "K"}}};

/// Adds and deletes rows with one key through a searcher's own table; counts the hidden rows that a walk
/// visits.
class DeletedRunsTest : public ::testing::TestWithParam<bool> {
protected:
    DeletedRunsTest() {
        if (GetParam()) {
            order_.setTag(table_->findTag("K"));
        }
    }

    [[nodiscard]] Bytes row(const std::string& key) const { return makeRecord(table_->schema(), {key, "1"}); }
    RecordNumber add(const std::string& key) {
        const std::uint64_t before = table_->changeCounter();
        const Bytes bytes = row(key);
        const RecordNumber number = table_->append(bytes);
        order_.rowAdded(before, {&table_->schema(), bytes, number});
        return number;
    }
    void addAndDelete(const std::string& key) {
        const RecordNumber number = add(key);
        const std::uint64_t before = table_->changeCounter();
        table_->erase(number, row(key));
        order_.rowDeleted(before);
    }
    /// The row found from an end on, and how many hidden ones the walk met.
    std::pair<RecordNumber, std::size_t> walk(Direction direction) {
        constexpr std::size_t most = 100'000;
        std::size_t left = most;
        const RecordNumber found = table_->read([&] {
            Spot spot;
            return order_.toEnd(spot, direction) && order_.toVisible(spot, direction, {}, &left) ? spot.record
                                                                                                 : 0;
        });
        return {found, most - left};
    }

    MemoryTable stored_{keys};
    std::unique_ptr<Table> table_ = stored_.open();
    RowOrder order_{*table_};
};

INSTANTIATE_TEST_SUITE_P(InATag, DeletedRunsTest, ::testing::Values(true));
INSTANTIATE_TEST_SUITE_P(InTheOrderOfTheFile, DeletedRunsTest, ::testing::Values(false));

TEST_P(DeletedRunsTest, OneKeyAddedAndDeletedManyTimesIsSteppedOverAtOnce) {
    std::size_t visited = 0;
    for (int i = 0; i < 2000; ++i) {
        addAndDelete("A");
        visited += walk(Direction::Backward).second;
        visited += walk(Direction::Forward).second;
    }
    EXPECT_LT(visited, 2000U * 10); // each row once, and the first and the last of the run
}

TEST_P(DeletedRunsTest, ARowAddedAfterTheRunIsFound) {
    for (int i = 0; i < 100; ++i) {
        addAndDelete("B");
    }
    EXPECT_EQ(walk(Direction::Backward).first, 0U);
    add("B");
    EXPECT_EQ(walk(Direction::Backward).first, 101U);
    EXPECT_EQ(walk(Direction::Forward).first, 101U);
}

TEST_P(DeletedRunsTest, ARowAddedAmongTheRunIsFound) {
    for (int i = 0; i < 100; ++i) {
        addAndDelete(i < 50 ? "A" : "C");
    }
    EXPECT_EQ(walk(Direction::Backward).first, 0U);
    add("B");
    EXPECT_EQ(walk(Direction::Backward).first, 101U);
    EXPECT_EQ(walk(Direction::Forward).first, 101U);
}

TEST_P(DeletedRunsTest, ARowAddedByAnotherProgramIsFound) {
    for (int i = 0; i < 100; ++i) {
        addAndDelete(i < 50 ? "A" : "C");
    }
    EXPECT_EQ(walk(Direction::Forward).first, 0U);
    stored_.open()->append(row("B"));
    EXPECT_EQ(walk(Direction::Forward).first, 101U);
    EXPECT_EQ(walk(Direction::Backward).first, 101U);
}

/// Random changes by two datasets of one table, few keys, most rows deleted soon.
TEST(DeletedRuns, WalksShowTheRowsThatAreThereWhateverHappens) {
    const TemporaryFolder folder;
    createTable(folder.path(), keys);
    setDatabaseFolder("CLAVES", folder.path());
    Dataset one("CLAVES", "CLAVES"), other("CLAVES", "CLAVES");
    for (Dataset* rows : {&one, &other}) {
        rows->setTag("K");
        rows->open();
    }
    std::mt19937 random(20261122);
    std::set<std::pair<std::string, RecordNumber>> there;
    const auto keyOf = [](Dataset& rows) { return rows.field("K").text(); };
    const auto goFirst = [](Dataset& rows) {
        rows.first();
        return !rows.isEmpty();
    };
    const auto remove = [&](Dataset& rows) {
        there.erase({keyOf(rows), rows.recordNumber()});
        rows.erase();
    };
    for (int step = 0; step < 4000; ++step) {
        Dataset& rows = random() % 8 == 0 ? other : one;
        const std::string key(1, static_cast<char>('A' + random() % 3));
        if (random() % 16 == 0 && goFirst(rows)) {
            there.erase({keyOf(rows), rows.recordNumber()});
            rows.edit();
            rows.field("K").setText(key);
            rows.post();
        } else {
            rows.append();
            rows.field("K").setText(key);
            rows.post();
        }
        there.emplace(key, rows.recordNumber());
        if (random() % 16 != 0) {
            remove(rows);
        }
        if (there.size() > 5 && goFirst(one)) {
            remove(one);
        }
        std::set<std::pair<std::string, RecordNumber>> seen;
        for (bool on = goFirst(one); on; on = one.next()) {
            seen.emplace(keyOf(one), one.recordNumber());
        }
        ASSERT_EQ(seen, there) << "step " << step;
        if (!there.empty()) {
            one.last();
            ASSERT_EQ(one.recordNumber(), there.rbegin()->second) << "step " << step;
        }
    }
    EXPECT_EQ(findings(folder / "CLAVES.DBF"), "");
}

} // namespace
