// Walks over rows.
#include "dbase/dataset/row_walk.h"

#include <gtest/gtest.h>

#include <functional>

#include "dbase/table/towns_fixture.h"

namespace dbase {
namespace {

class RowWalkTest : public TownsTest {
protected:
    RowWalkTest() { towns.open(); } // in the order of CODE: records 2, 4, 8, 5, 3, 7, 1, 6

    Records visited;
    const std::function<void()> visit = [this] { visited.push_back(towns.recordNumber()); };

    auto isRecord(RecordNumber number) {
        return [this, number] { return towns.recordNumber() == number; };
    }
    auto isNotRecord(RecordNumber number) {
        return [this, number] { return towns.recordNumber() != number; };
    }
};

TEST_F(RowWalkTest, EveryRowIsVisitedFromTheFirstOneWhereverTheTableStood) {
    towns.last();
    forEachRow(towns, visit);
    EXPECT_EQ(visited, (Records{2, 4, 8, 5, 3, 7, 1, 6}));
    EXPECT_EQ(towns.recordNumber(), 6u) << "the walk ends on the last row";
    EXPECT_TRUE(towns.eof());
}

TEST_F(RowWalkTest, RowsHiddenByTheFilterAreNotVisited) {
    towns.setFilter("CODE='28079'");
    const Records shown = walk(towns);
    forEachRow(towns, visit);
    EXPECT_EQ(visited, shown);
    ASSERT_FALSE(shown.empty());
}

TEST_F(RowWalkTest, WithoutRowsNothingIsVisitedNorAsked) {
    towns.setFilter("CODE='99999'");
    ASSERT_TRUE(towns.isEmpty());
    const auto unexpected = [] {
        ADD_FAILURE();
        return true;
    };
    forEachRow(towns, visit);
    forEachRowWhile(towns, unexpected, visit);
    EXPECT_FALSE(walkTo(towns, unexpected, unexpected));
    EXPECT_TRUE(visited.empty());
}

TEST_F(RowWalkTest, VisitsGoOnFromTheCurrentRowWhileTheConditionHolds) {
    ASSERT_TRUE(towns.goTo(Bookmark(8)));
    forEachRowWhile(towns, isNotRecord(7), visit);
    EXPECT_EQ(visited, (Records{8, 5, 3}));
    EXPECT_EQ(towns.recordNumber(), 7u) << "the row that ended the walk";
}

TEST_F(RowWalkTest, WalkEndsOnTheFirstRowThatIsWanted) {
    ASSERT_TRUE(towns.goTo(Bookmark(4)));
    EXPECT_TRUE(walkTo(towns, isRecord(3)));
    EXPECT_EQ(towns.recordNumber(), 3u);
}

TEST_F(RowWalkTest, CurrentRowMayBeTheOneThatIsWanted) {
    ASSERT_TRUE(towns.goTo(Bookmark(4)));
    EXPECT_TRUE(walkTo(towns, isRecord(4)));
    EXPECT_EQ(towns.recordNumber(), 4u);
    EXPECT_FALSE(walkTo(towns, isNotRecord(4), isRecord(4))) << "but not against the condition";
}

TEST_F(RowWalkTest, WalkThatFindsNothingEndsOnTheLastRowOrOnTheFirstPastTheCondition) {
    EXPECT_FALSE(walkTo(towns, isRecord(99)));
    EXPECT_EQ(towns.recordNumber(), 6u);
    towns.first();
    EXPECT_FALSE(walkTo(towns, isNotRecord(5), isRecord(3)));
    EXPECT_EQ(towns.recordNumber(), 5u);
}

} // namespace
} // namespace dbase
