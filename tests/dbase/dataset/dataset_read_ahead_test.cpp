// A long walk reads rows ahead; a change by our programs still shows at the next step.
#include <gtest/gtest.h>

#include "dbase/dataset/dataset.h"
#include "dbase/mdx/tree_cursor.h"
#include "dbase/support/StoredTable.h"
#include "dbase/table/table.h"
#include "dbase/table/workstation.h"
#include "support/TableTest.h"

namespace dbase {
namespace {

/// With keys of a width: short ones, of which a leaf has more than are read ahead, and long ones, so that the
/// rows of several leaves are.
class ReadAheadTest : public ambrel::test::TableTest, public ::testing::WithParamInterface<int> {
protected:
    ReadAheadTest() {
        std::vector<ambrel::test::Row> rows;
        for (int i = 0; i < 300; ++i) {
            rows.push_back({codeOf(i), "F"});
        }
        createTable(
            ambrel::test::defineTable("LONG", {"CODE C" + std::to_string(GetParam()), "HIDDEN L"}, {"CODE"}),
            rows);
    }
    /// Rows 0, 1, 2… have the codes 1000, 1010, 1020…
    static std::string codeOf(int row) { return std::to_string(1000 + 10 * row); }

    void open() { table_.open(); }
    /// Walks onto a row, so that the rows after it are read ahead.
    void walkTo(int row) {
        table_.first();
        for (int i = 0; i < row; ++i) {
            ASSERT_TRUE(table_.next());
        }
        ASSERT_EQ(code(), codeOf(row));
    }
    [[nodiscard]] std::string code() { return table_.field("CODE").text(); }

    static void find(Dataset& table, const std::string& code) {
        table.open();
        require(table.seek({{"CODE", code}}, SeekMode::Exact), "no such row");
    }
    static void recode(Dataset& table, const std::string& from, const char* to) {
        find(table, from);
        table.edit();
        table.field("CODE").setText(to);
        table.post();
    }
    static void insert(Dataset& table, const char* code) {
        table.open();
        table.append();
        table.field("CODE").setText(code);
        table.post();
    }
    static void erase(Dataset& table, const std::string& code) {
        find(table, code);
        table.erase();
    }

    Dataset table_{"DB", "LONG", "CODE"}, other_{"DB", "LONG", "CODE"};
};

TEST_P(ReadAheadTest, InsertAheadIsSeen) {
    open();
    walkTo(20);
    insert(other_, "1205");
    EXPECT_TRUE(table_.next());
    EXPECT_EQ(code(), "1205");
    EXPECT_TRUE(table_.next());
    EXPECT_EQ(code(), codeOf(21));
}

TEST_P(ReadAheadTest, InsertBehindDoesNotShiftTheWalk) {
    open();
    walkTo(20);
    insert(other_, "1195");
    EXPECT_TRUE(table_.next());
    EXPECT_EQ(code(), codeOf(21));
    EXPECT_TRUE(table_.prior());
    EXPECT_TRUE(table_.prior());
    EXPECT_EQ(code(), "1195");
}

TEST_P(ReadAheadTest, DeleteAheadIsSeen) {
    open();
    walkTo(20);
    erase(other_, codeOf(21));
    erase(other_, codeOf(22));
    EXPECT_TRUE(table_.next());
    EXPECT_EQ(code(), codeOf(23));
}

TEST_P(ReadAheadTest, DeleteOfTheRowShownDoesNotShiftTheWalk) {
    open();
    walkTo(20);
    erase(other_, codeOf(20));
    EXPECT_TRUE(table_.next());
    EXPECT_EQ(code(), codeOf(21));
}

TEST_P(ReadAheadTest, EditAheadIsSeen) {
    open();
    walkTo(20);
    recode(other_, codeOf(21), "1211");
    EXPECT_TRUE(table_.next());
    EXPECT_EQ(code(), "1211");
}

TEST_P(ReadAheadTest, RowThatMovesFromAheadToBehindIsNotSeen) {
    open();
    walkTo(20);
    recode(other_, codeOf(21), "0001");
    EXPECT_TRUE(table_.next());
    EXPECT_EQ(code(), codeOf(22));
}

TEST_P(ReadAheadTest, RowThatMovesFromBehindToAheadIsSeen) {
    open();
    walkTo(20);
    recode(other_, codeOf(3), "1205");
    EXPECT_TRUE(table_.next());
    EXPECT_EQ(code(), "1205");
}

TEST_P(ReadAheadTest, RowShownThatMovesAwayLeavesTheWalkItsPlace) {
    open();
    walkTo(20);
    recode(other_, codeOf(20), "9999");
    EXPECT_TRUE(table_.next());
    EXPECT_EQ(code(), codeOf(21));
}

TEST_P(ReadAheadTest, RowThatTheFilterHidesMeanwhileIsNotSeen) {
    open();
    table_.setFilter("HIDDEN=False");
    walkTo(20);
    find(other_, codeOf(21));
    other_.edit();
    other_.field("HIDDEN").setLogical(true);
    other_.post();
    EXPECT_TRUE(table_.next());
    EXPECT_EQ(code(), codeOf(22));
}

TEST_P(ReadAheadTest, OnesOwnChangesAreSeen) {
    open();
    walkTo(20);
    table_.edit();
    table_.field("CODE").setText("1215");
    table_.post();
    EXPECT_TRUE(table_.next());
    EXPECT_EQ(code(), codeOf(22));
    walkTo(10);
    table_.erase();
    EXPECT_EQ(code(), codeOf(11));
    EXPECT_TRUE(table_.next());
    EXPECT_EQ(code(), codeOf(12));
}

TEST_P(ReadAheadTest, OtherMovesInTheMiddleStartAnew) {
    open();
    walkTo(20);
    const Bookmark mark = table_.bookmark();
    table_.next();
    EXPECT_TRUE(table_.goTo(mark));
    EXPECT_TRUE(table_.next());
    EXPECT_EQ(code(), codeOf(21));
    EXPECT_TRUE(table_.seek({{"CODE", codeOf(200)}}, SeekMode::Exact));
    EXPECT_TRUE(table_.next());
    EXPECT_EQ(code(), codeOf(201));
    walkTo(20);
    EXPECT_TRUE(table_.prior());
    EXPECT_TRUE(table_.next());
    EXPECT_EQ(code(), codeOf(20));
    table_.setRange({{"CODE", codeOf(20)}}, {{"CODE", codeOf(22)}});
    EXPECT_TRUE(table_.next());
    EXPECT_TRUE(table_.next());
    EXPECT_FALSE(table_.next());
    EXPECT_EQ(code(), codeOf(22));
    table_.clearRange();
    EXPECT_TRUE(table_.next());
    EXPECT_EQ(code(), codeOf(23));
}

TEST_P(ReadAheadTest, ChangesOfAnotherProcessAreSeenAtTheNextStep) {
    Workstation away({[this] { insert(other_, "1205"); }, [this] { insert(other_, "1005"); },
                      [this] { erase(other_, codeOf(21)); }, [this] { recode(other_, codeOf(22), "1221"); },
                      [this] { recode(other_, codeOf(2), "1225"); }, [this] { erase(other_, "1225"); }});
    open();
    walkTo(20);
    const auto stepAfterChange = [&] {
        EXPECT_EQ(away.step(), "");
        EXPECT_TRUE(table_.next());
        return code();
    };
    EXPECT_EQ(stepAfterChange(), "1205");
    EXPECT_EQ(stepAfterChange(), codeOf(21));
    EXPECT_EQ(stepAfterChange(), codeOf(22)) << "the row shown was deleted";
    EXPECT_EQ(stepAfterChange(), "1221") << "the row shown moved on a little";
    EXPECT_EQ(stepAfterChange(), "1225");
    EXPECT_EQ(stepAfterChange(), codeOf(23));
}

TEST_P(ReadAheadTest, WholeWalkWhileAnotherProcessWritesEndsAndRepeatsNothing) {
    std::vector<std::function<void()>> steps;
    for (int i = 0; i < 60; ++i) {
        steps.push_back([this, i] {
            insert(other_, (codeOf(i * 5) + "A").c_str());
            erase(other_, codeOf(i * 5 + 2));
        });
    }
    Workstation away(steps);
    open();
    std::string last = code();
    for (int i = 1; table_.next(); ++i) {
        ASSERT_LT(last, code());
        last = code();
        if (i % 5 == 0 && i / 5 <= 60) {
            ASSERT_EQ(away.step(), "");
        }
    }
    EXPECT_EQ(last, codeOf(299));
}

TEST_P(ReadAheadTest, ATurnAnywhereGoesBackToTheRowBefore) {
    open();
    for (int i = 1; i < 300; ++i) {
        ASSERT_TRUE(table_.next());
        ASSERT_EQ(code(), codeOf(i));
        if (i % 37 == 0) {
            ASSERT_TRUE(table_.prior());
            ASSERT_EQ(code(), codeOf(i - 1));
            ASSERT_TRUE(table_.next());
        }
    }
    EXPECT_FALSE(table_.next());
    EXPECT_TRUE(table_.eof());
}

TEST_P(ReadAheadTest, AChangeFarAheadIsSeen) {
    open();
    walkTo(150); // by now the rows of several leaves are read together
    recode(other_, codeOf(190), "1");
    erase(other_, codeOf(200));
    insert(other_, (codeOf(205) + "A").c_str());
    std::string last = code();
    for (const int i : {189, 191, 199, 201, 205}) {
        while (last < codeOf(i)) {
            ASSERT_TRUE(table_.next());
            last = code();
        }
        ASSERT_EQ(last, codeOf(i));
    }
    EXPECT_TRUE(table_.next());
    EXPECT_EQ(code(), codeOf(205) + "A");
}

TEST_P(ReadAheadTest, DamageFarAheadIsReportedByTheStepThatReachesIt) {
    const auto leaves = [&] {
        table_.open();
        const Table& table = table_.openTable();
        TreeCursor cursor(*table.index(), *table.findTag("CODE"));
        std::vector<std::pair<PageNumber, int>> found; // with the number of its entries
        for (bool on = cursor.first(); on; on = cursor.nextLeaf()) {
            found.emplace_back(cursor.path().back().page, static_cast<int>(cursor.leaf().count()));
        }
        table_.close();
        return found;
    }();
    ASSERT_GT(leaves.size(), 3U);
    leaveUnchecked();
    int before = -1;
    for (std::size_t i = 0; i + 1 < leaves.size(); ++i) {
        before += leaves[i].second;
    }
    open();
    openFile(folder / "LONG.MDX", OpenMode::ReadWrite)
        ->write(std::uint64_t{leaves.back().first} * pageBytes, std::string(4, '\x7F')); // of its count
    walkTo(before);
    EXPECT_EQ(test::errorOf([&] { table_.next(); }).code(), ErrorCode::BadIndex);
}

INSTANTIATE_TEST_SUITE_P(Widths, ReadAheadTest, ::testing::Values(6, 60));

} // namespace
} // namespace dbase
