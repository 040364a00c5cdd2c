// Ranges: the records they show, and their borders.
#include <gtest/gtest.h>

#include "dbase/table/towns_fixture.h"

namespace dbase {
namespace {

class RangeTest : public TownsTest {
protected:
    RangeTest() { towns.open(); }
};

TEST_F(RangeTest, ShowsTheRecordsBetweenBothKeysIncluded) {
    towns.setRange({{"CODE", "08101"}}, {{"CODE", "28013"}});
    EXPECT_EQ(walk(towns), (Records{4, 8, 5, 3, 7}));
    EXPECT_EQ(walkBack(towns), (Records{7, 3, 5, 8, 4}));
}

TEST_F(RangeTest, LandsOnItsFirstRecordAtBof) {
    towns.last();
    towns.setRange({{"CODE", "08101"}}, {{"CODE", "28013"}});
    EXPECT_EQ(towns.recordNumber(), 4u);
    EXPECT_TRUE(towns.bof());
    EXPECT_FALSE(towns.eof());
}

TEST_F(RangeTest, StepsStopAtItsBorders) {
    towns.setRange({{"CODE", "28000"}}, {{"CODE", "28013"}});
    EXPECT_FALSE(towns.prior());
    EXPECT_TRUE(towns.bof());
    EXPECT_EQ(towns.recordNumber(), 5u);
    towns.last();
    EXPECT_FALSE(towns.next());
    EXPECT_EQ(towns.recordNumber(), 7u);
}

TEST_F(RangeTest, KeysWithOnlyLeadingFieldsCompareThose) {
    towns.setTag("PROVNAME");
    towns.setRange({{"PROV", "15"}}, {{"PROV", "28"}});
    EXPECT_EQ(walk(towns), (Records{8, 5, 7, 3, 1}));
    towns.setRange({{"PROV", "08"}, {"NAME", "C"}}, {{"PROV", "28"}, {"NAME", "APEADERO"}});
    EXPECT_EQ(walk(towns), (Records{4, 8, 5, 7}));
}

TEST_F(RangeTest, BoundsOfANumericTagAreNumbers) {
    towns.setTag("GROUP");
    towns.setRange({{"GROUP", 2}}, {{"GROUP", 5}});
    EXPECT_EQ(walk(towns), (Records{3, 4, 5}));
}

TEST_F(RangeTest, DescendingTagTakesItsBoundsEitherWay) {
    towns.setTag("FALLING");
    towns.setRange({{"NAME", "B"}}, {{"NAME", "I"}});
    EXPECT_EQ(walk(towns), (Records{4, 8, 2}));
    towns.setRange({{"NAME", "I"}}, {{"NAME", "B"}});
    EXPECT_EQ(walk(towns), (Records{4, 8, 2}));
}

TEST_F(RangeTest, NothingBetweenTheBoundsIsAnEmptyTable) {
    towns.setRange({{"CODE", "30000"}}, {{"CODE", "40000"}});
    EXPECT_TRUE(towns.isEmpty());
    EXPECT_TRUE(towns.bof() && towns.eof());
    EXPECT_EQ(name(towns), "");
    towns.setRange({{"CODE", "28079"}}, {{"CODE", "08019"}});
    EXPECT_TRUE(towns.isEmpty()) << "low above high";
    EXPECT_FALSE(towns.next());
    towns.clearRange();
    EXPECT_EQ(towns.recordNumber(), 2u);
}

TEST_F(RangeTest, RangeAndFilterTogether) {
    towns.setFilter("MINOR=False");
    towns.setRange({{"CODE", "15030"}}, {{"CODE", "28079"}});
    EXPECT_EQ(walk(towns), (Records{8, 5, 1}));
    EXPECT_EQ(walkBack(towns), (Records{1, 5, 8}));
}

TEST_F(RangeTest, ClearingKeepsTheRecord) {
    towns.setRange({{"CODE", "28000"}}, {{"CODE", "28999"}});
    place(towns, 7);
    towns.clearRange();
    EXPECT_EQ(towns.recordNumber(), 7u);
    EXPECT_EQ(walk(towns).size(), 8u);
}

TEST_F(RangeTest, NeedsAnActiveTag) {
    towns.setTag("");
    EXPECT_EQ(codeOf([&] { towns.setRange({{"CODE", "1"}}, {{"CODE", "2"}}); }), ErrorCode::BadState);
    towns.close();
    EXPECT_EQ(codeOf([&] { towns.setRange({{"CODE", "1"}}, {{"CODE", "2"}}); }), ErrorCode::BadState);
}

TEST_F(RangeTest, BoundThatCannotBeMadeLeavesEverything) {
    towns.setTag("GROUP");
    towns.setRange({{"GROUP", 2}}, {{"GROUP", 5}});
    EXPECT_EQ(codeOf([&] { towns.setRange({{"GROUP", 2}}, {{"GROUP", 12345678}}); }), ErrorCode::BadValue);
    EXPECT_EQ(walk(towns), (Records{3, 4, 5}));
}

TEST_F(RangeTest, GoesWithTheClosing) {
    towns.setRange({{"CODE", "28000"}}, {{"CODE", "28999"}});
    towns.close();
    towns.open();
    EXPECT_EQ(walk(towns).size(), 8u);
}

TEST_F(RangeTest, RecordThatLeavesTheRangeIsSteppedFromItsOldPlace) {
    other.open();
    towns.setRange({{"CODE", "28000"}}, {{"CODE", "28999"}});
    place(towns, 3);
    place(other, 3);
    change(other, {{"CODE", "99999"}});
    EXPECT_TRUE(towns.next());
    EXPECT_EQ(towns.recordNumber(), 7u);
    EXPECT_EQ(walk(towns), (Records{5, 7, 1}));
}

// A posted row is current wherever it is; from outside, the range begins at its nearer end.
TEST_F(RangeTest, StepsFromARowPostedBelowTheRangeEnterIt) {
    towns.setRange({{"CODE", "28000"}}, {{"CODE", "28999"}});
    append(towns, {{"CODE", "03001"}});
    EXPECT_EQ(towns.recordNumber(), 9u);
    EXPECT_FALSE(towns.prior());
    EXPECT_EQ(towns.recordNumber(), 9u);
    EXPECT_TRUE(towns.next());
    EXPECT_EQ(towns.recordNumber(), 5u);
}

TEST_F(RangeTest, StepsFromARowPostedAfterTheRangeEnterIt) {
    towns.setRange({{"CODE", "28000"}}, {{"CODE", "28999"}});
    append(towns, {{"CODE", "50001"}});
    EXPECT_FALSE(towns.next());
    EXPECT_EQ(towns.recordNumber(), 9u);
    EXPECT_TRUE(towns.prior());
    EXPECT_EQ(towns.recordNumber(), 1u);
}

} // namespace
} // namespace dbase
