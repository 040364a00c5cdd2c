// Filters on a dataset: the records they show, and the current one after they are set or removed.
#include <gtest/gtest.h>

#include "dbase/table/towns_fixture.h"

namespace dbase {
namespace {

class DatasetFilterTest : public TownsTest {
protected:
    DatasetFilterTest() { towns.open(); }

    Records shownBy(const std::string& filter) {
        towns.setFilter(filter);
        return walk(towns);
    }
};

TEST_F(DatasetFilterTest, HidesWhatDoesNotMatch) {
    EXPECT_EQ(shownBy("MINOR=False"), (Records{2, 4, 8, 5, 1, 6})) << "a blank logical is false";
    EXPECT_EQ(shownBy("MINOR=True"), (Records{3, 7}));
    EXPECT_EQ(shownBy("GROUP = 10"), (Records{2, 1, 6}));
    EXPECT_EQ(shownBy("GROUP=0"), (Records{8})) << "a blank number counts as 0";
    EXPECT_EQ(shownBy("BALANCE < 0"), (Records{2}));
    EXPECT_EQ(shownBy(""), (Records{2, 4, 8, 5, 3, 7, 1, 6}));
}

TEST_F(DatasetFilterTest, EqualsComparesWholeTextsWithoutTrailingBlanks) {
    EXPECT_EQ(shownBy("NAME='MADRID'"), (Records{1}));
    EXPECT_EQ(shownBy("NAME='MADRID   '"), (Records{1}));
    EXPECT_EQ(shownBy("NAME='MADRI'"), (Records{}));
}

TEST_F(DatasetFilterTest, EqualsOfAForConditionIsTrueForABeginning) {
    TableDefinition definition = ambrel::test::defineTable("FORS", {"NAME C12"}, {"NAME"});
    definition.tags.push_back({.name = "ASONLY", .expression = "NAME", .condition = "NAME='A'"});
    createTable(definition, {{"ALCALA"}, {"MADRID"}, {"AVILA"}, {"A"}});
    Dataset fors("DB", "FORS", "ASONLY");
    fors.open();
    EXPECT_EQ(walk(fors), (Records{4, 1, 3}));
    fors.setFilter("NAME='A'");
    EXPECT_EQ(walk(fors), (Records{4})) << "the filter compares the whole text";
}

TEST_F(DatasetFilterTest, AndOrNotAndBracketsJoinConditions) {
    EXPECT_EQ(shownBy("PROV='28' AND MINOR=False"), (Records{5, 1}));
    EXPECT_EQ(shownBy("PROV='46' OR PROV='15'"), (Records{8, 6}));
    EXPECT_EQ(shownBy("NOT (PROV='28' OR PROV='08')"), (Records{8, 6}));
    EXPECT_EQ(shownBy("(PROV='08' OR PROV='28') AND GROUP>=5"), (Records{2, 5, 1}));
}

TEST_F(DatasetFilterTest, WorksInEveryOrderAndBothWays) {
    towns.setFilter("GROUP=10");
    towns.setTag("NAME");
    EXPECT_EQ(walk(towns), (Records{2, 1, 6}));
    EXPECT_EQ(walkBack(towns), (Records{6, 1, 2}));
    towns.setTag("");
    EXPECT_EQ(walk(towns), (Records{1, 2, 6}));
    EXPECT_EQ(walkBack(towns), (Records{6, 2, 1}));
}

TEST_F(DatasetFilterTest, KeepsTheRecordThatItShows) {
    place(towns, 5);
    towns.setFilter("MINOR=False");
    EXPECT_EQ(towns.recordNumber(), 5u);
    EXPECT_FALSE(towns.bof());
    towns.clearFilter();
    EXPECT_EQ(towns.recordNumber(), 5u);
    EXPECT_EQ(towns.filter(), "");
}

TEST_F(DatasetFilterTest, LandsOnTheNextWhenItHidesTheRecordElseOnTheLast) {
    place(towns, 3);
    towns.setFilter("MINOR=False");
    EXPECT_EQ(towns.recordNumber(), 1u);
    towns.last();
    towns.setFilter("PROV='08'");
    EXPECT_EQ(towns.recordNumber(), 4u);
}

TEST_F(DatasetFilterTest, HidingEverythingIsAnEmptyTable) {
    towns.setFilter("PROV='99'");
    EXPECT_TRUE(towns.isEmpty());
    EXPECT_TRUE(towns.bof() && towns.eof());
    EXPECT_EQ(name(towns), "");
    EXPECT_EQ(codeOf([&] { towns.edit(); }), ErrorCode::BadState);
    EXPECT_EQ(codeOf([&] { towns.erase(); }), ErrorCode::BadState);
    towns.clearFilter();
    EXPECT_EQ(towns.recordNumber(), 2u);
}

TEST_F(DatasetFilterTest, TextThatIsNotUnderstoodRaisesAndChangesNothing) {
    towns.setFilter("MINOR=False");
    place(towns, 5);
    EXPECT_EQ(codeOf([&] { towns.setFilter("MINOR="); }), ErrorCode::BadExpression);
    EXPECT_EQ(codeOf([&] { towns.setFilter("NOSUCH=1"); }), ErrorCode::BadExpression);
    EXPECT_EQ(codeOf([&] { towns.setFilter("NAME"); }), ErrorCode::BadExpression) << "no condition";
    EXPECT_EQ(towns.filter(), "MINOR=False");
    EXPECT_EQ(towns.recordNumber(), 5u);
    EXPECT_EQ(walk(towns).size(), 6u);
}

TEST_F(DatasetFilterTest, SetWhileClosedHoldsFromTheOpening) {
    towns.close();
    towns.setFilter("PROV='28'");
    towns.open();
    EXPECT_EQ(walk(towns), (Records{5, 3, 7, 1}));
}

TEST_F(DatasetFilterTest, BadOneSetWhileClosedKeepsTheTableClosed) {
    towns.close();
    for (const char* text : {"NOSUCH=1", "NAME", "GROUP+1"}) {
        towns.setFilter(text);
        EXPECT_EQ(codeOf([&] { towns.open(); }), ErrorCode::BadExpression) << text;
        EXPECT_FALSE(towns.isOpen()) << text;
    }
    towns.clearFilter();
    towns.open();
    EXPECT_EQ(walk(towns).size(), 8u);
}

TEST_F(DatasetFilterTest, StaysThroughClosingAndOpening) {
    towns.setFilter("PROV='28'");
    towns.close();
    EXPECT_EQ(towns.filter(), "PROV='28'");
    towns.open();
    EXPECT_EQ(walk(towns), (Records{5, 3, 7, 1}));
}

} // namespace
} // namespace dbase
