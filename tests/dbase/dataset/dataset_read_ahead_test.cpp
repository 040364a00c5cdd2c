// A long walk reads rows ahead; a change by our programs still shows at the next step.
#include <gtest/gtest.h>

#include "dbase/dataset/dataset.h"
#include "dbase/table/workstation.h"
#include "support/TableTest.h"

namespace dbase {
namespace {

class ReadAheadTest : public ambrel::test::TableTest {
protected:
    ReadAheadTest() {
        std::vector<ambrel::test::Row> rows;
        for (int i = 0; i < 300; ++i) {
            rows.push_back({codeOf(i), "F"});
        }
        createTable(ambrel::test::defineTable("LONG", {"CODE C6", "HIDDEN L"}, {"CODE"}), rows);
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

TEST_F(ReadAheadTest, InsertAheadIsSeen) {
    open();
    walkTo(20);
    insert(other_, "1205");
    EXPECT_TRUE(table_.next());
    EXPECT_EQ(code(), "1205");
    EXPECT_TRUE(table_.next());
    EXPECT_EQ(code(), codeOf(21));
}

TEST_F(ReadAheadTest, InsertBehindDoesNotShiftTheWalk) {
    open();
    walkTo(20);
    insert(other_, "1195");
    EXPECT_TRUE(table_.next());
    EXPECT_EQ(code(), codeOf(21));
    EXPECT_TRUE(table_.prior());
    EXPECT_TRUE(table_.prior());
    EXPECT_EQ(code(), "1195");
}

TEST_F(ReadAheadTest, DeleteAheadIsSeen) {
    open();
    walkTo(20);
    erase(other_, codeOf(21));
    erase(other_, codeOf(22));
    EXPECT_TRUE(table_.next());
    EXPECT_EQ(code(), codeOf(23));
}

TEST_F(ReadAheadTest, DeleteOfTheRowShownDoesNotShiftTheWalk) {
    open();
    walkTo(20);
    erase(other_, codeOf(20));
    EXPECT_TRUE(table_.next());
    EXPECT_EQ(code(), codeOf(21));
}

TEST_F(ReadAheadTest, EditAheadIsSeen) {
    open();
    walkTo(20);
    recode(other_, codeOf(21), "1211");
    EXPECT_TRUE(table_.next());
    EXPECT_EQ(code(), "1211");
}

TEST_F(ReadAheadTest, RowThatMovesFromAheadToBehindIsNotSeen) {
    open();
    walkTo(20);
    recode(other_, codeOf(21), "0001");
    EXPECT_TRUE(table_.next());
    EXPECT_EQ(code(), codeOf(22));
}

TEST_F(ReadAheadTest, RowThatMovesFromBehindToAheadIsSeen) {
    open();
    walkTo(20);
    recode(other_, codeOf(3), "1205");
    EXPECT_TRUE(table_.next());
    EXPECT_EQ(code(), "1205");
}

TEST_F(ReadAheadTest, RowShownThatMovesAwayLeavesTheWalkItsPlace) {
    open();
    walkTo(20);
    recode(other_, codeOf(20), "9999");
    EXPECT_TRUE(table_.next());
    EXPECT_EQ(code(), codeOf(21));
}

TEST_F(ReadAheadTest, RowThatTheFilterHidesMeanwhileIsNotSeen) {
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

TEST_F(ReadAheadTest, OnesOwnChangesAreSeen) {
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

TEST_F(ReadAheadTest, OtherMovesInTheMiddleStartAnew) {
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

TEST_F(ReadAheadTest, ChangesOfAnotherProcessAreSeenAtTheNextStep) {
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

TEST_F(ReadAheadTest, WholeWalkWhileAnotherProcessWritesEndsAndRepeatsNothing) {
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

} // namespace
} // namespace dbase
