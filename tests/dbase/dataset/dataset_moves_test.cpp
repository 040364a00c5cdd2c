// Moving: orders, the ends, changes of tag, bookmarks.
#include <gtest/gtest.h>

#include <algorithm>

#include "dbase/table/towns_fixture.h"

namespace dbase {
namespace {

class MovesTest : public TownsTest {
protected:
    MovesTest() { towns.open(); }

    Records orderOf(const char* tag) {
        towns.setTag(tag);
        return walk(towns);
    }
};

TEST_F(MovesTest, OpensOnTheFirstRecordAtBof) {
    EXPECT_EQ(towns.state(), DatasetState::Browse);
    EXPECT_EQ(towns.recordNumber(), 2u);
    EXPECT_TRUE(towns.bof());
    EXPECT_FALSE(towns.eof());
    EXPECT_FALSE(towns.isEmpty());
}

TEST_F(MovesTest, EveryTagHasItsOrder) {
    EXPECT_EQ(orderOf("CODE"), (Records{2, 4, 8, 5, 3, 7, 1, 6})) << "equal keys in record-number order";
    EXPECT_EQ(orderOf("NAME"), (Records{5, 7, 3, 2, 8, 4, 1, 6}));
    EXPECT_EQ(orderOf("PROVNAME"), (Records{2, 4, 8, 5, 7, 3, 1, 6}));
    EXPECT_EQ(orderOf("GROUP"), (Records{8, 7, 3, 4, 5, 1, 2, 6}));
    EXPECT_EQ(orderOf("SINCE"), (Records{7, 2, 5, 6, 1, 4, 8, 3}));
    EXPECT_EQ(orderOf("FALLING"), (Records{6, 1, 4, 8, 2, 3, 7, 5}));
    EXPECT_EQ(orderOf("ONCE"), (Records{2, 8, 1, 6}));
    EXPECT_EQ(orderOf("BIG"), (Records{2, 1, 6}));
    EXPECT_EQ(orderOf(""), (Records{1, 2, 3, 4, 5, 6, 7, 8})) << "no tag: the order of the file";
}

TEST_F(MovesTest, BackwardsIsTheReverse) {
    for (const std::string& tag : towns.tagNames()) {
        towns.setTag(tag);
        Records forward = walk(towns);
        std::reverse(forward.begin(), forward.end());
        EXPECT_EQ(walkBack(towns), forward) << tag;
    }
    towns.setTag("");
    EXPECT_EQ(walkBack(towns), (Records{8, 7, 6, 5, 4, 3, 2, 1}));
}

TEST_F(MovesTest, StepThatDoesNotMoveSetsItsEndAndStays) {
    ASSERT_TRUE(exact(towns, {{"CODE", "46250"}}));
    EXPECT_FALSE(towns.eof()) << "landing on the last record is not the end";
    EXPECT_FALSE(towns.next());
    EXPECT_TRUE(towns.eof());
    EXPECT_FALSE(towns.bof());
    EXPECT_EQ(towns.recordNumber(), 6u);
    ASSERT_TRUE(exact(towns, {{"CODE", "08019"}}));
    EXPECT_FALSE(towns.prior());
    EXPECT_TRUE(towns.bof());
    EXPECT_FALSE(towns.eof());
    EXPECT_EQ(towns.recordNumber(), 2u);
}

TEST_F(MovesTest, StepThatMovesClearsBothEnds) {
    towns.first();
    EXPECT_TRUE(towns.next());
    EXPECT_FALSE(towns.bof());
    towns.last();
    EXPECT_TRUE(towns.prior());
    EXPECT_FALSE(towns.eof());
}

TEST_F(MovesTest, FirstAndLastSetTheirEnds) {
    towns.last();
    EXPECT_EQ(towns.recordNumber(), 6u);
    EXPECT_TRUE(towns.eof());
    EXPECT_FALSE(towns.bof());
    towns.first();
    EXPECT_EQ(towns.recordNumber(), 2u);
    EXPECT_TRUE(towns.bof());
    EXPECT_FALSE(towns.eof());
}

TEST_F(MovesTest, TheOnlyRecordIsAtBothEndsAfterStepsOutOfIt) {
    towns.setFilter("NAME='MADRID'");
    EXPECT_FALSE(towns.bof());
    EXPECT_FALSE(towns.next());
    EXPECT_FALSE(towns.prior());
    EXPECT_TRUE(towns.bof());
    EXPECT_TRUE(towns.eof());
    EXPECT_EQ(towns.recordNumber(), 1u);
}

TEST_F(MovesTest, EmptyTableReadsBlankAndIsAtBothEnds) {
    createEmpty();
    none.open();
    const auto expectNothing = [&](const char* when) {
        EXPECT_TRUE(none.isEmpty()) << when;
        EXPECT_TRUE(none.bof() && none.eof()) << when;
        EXPECT_EQ(none.recordNumber(), 0u) << when;
        EXPECT_EQ(name(none), "") << when;
        EXPECT_TRUE(none.field("GROUP").isNull()) << when;
        EXPECT_FALSE(none.bookmark()) << when;
    };
    expectNothing("open");
    none.first();
    expectNothing("first");
    none.last();
    expectNothing("last");
    EXPECT_FALSE(none.next());
    expectNothing("next");
    EXPECT_FALSE(none.prior());
    expectNothing("prior");
    none.refresh();
    expectNothing("refresh");
    none.setTag("NAME");
    expectNothing("another tag");
    none.setTag("");
    EXPECT_FALSE(none.next());
    expectNothing("the order of the file");
}

TEST_F(MovesTest, StepFromAnEmptyTableShowsTheRowsThatCame) {
    createEmpty();
    Dataset writer("DB", "NONE", "CODE");
    none.open();
    writer.open();
    append(writer, {{"CODE", "2"}});
    append(writer, {{"CODE", "1"}});
    EXPECT_TRUE(none.next());
    EXPECT_EQ(none.field("CODE").text(), "1");
    EXPECT_FALSE(none.bof() || none.eof());
}

TEST_F(MovesTest, DeletedRecordsAreInvisible) {
    place(towns, 5);
    towns.erase();
    EXPECT_EQ(orderOf("CODE"), (Records{2, 4, 8, 3, 7, 1, 6}));
    EXPECT_EQ(orderOf(""), (Records{1, 2, 3, 4, 6, 7, 8}));
}

TEST_F(MovesTest, BackAndForthBetweenTwoPagesNeverEnds) {
    std::vector<Row> rows;
    for (int i = 100; i < 250; ++i) {
        rows.push_back({std::to_string(i)});
    }
    createTable(ambrel::test::defineTable("PAGES", {"CODE C12"}, {"CODE"}), rows);
    Dataset pages("DB", "PAGES", "CODE");
    pages.open();
    for (std::size_t at = 1; at < rows.size(); ++at) { // the page border is somewhere among them
        const RecordNumber here = pages.recordNumber();
        for (int turn = 0; turn < 300; ++turn) {
            ASSERT_TRUE(pages.next());
            ASSERT_TRUE(pages.prior());
        }
        ASSERT_EQ(pages.recordNumber(), here);
        ASSERT_TRUE(pages.next());
    }
}

// --- Changes of tag

TEST_F(MovesTest, SetTagToTheActiveOneDoesNothing) {
    towns.setRange({{"CODE", "15030"}}, {{"CODE", "28013"}});
    towns.last();
    towns.setTag("code");
    EXPECT_EQ(towns.recordNumber(), 7u);
    EXPECT_TRUE(towns.eof());
    EXPECT_EQ(walk(towns), (Records{8, 5, 3, 7})) << "the range stays";
    towns.edit();
    towns.setTag("CODE");
    EXPECT_EQ(towns.state(), DatasetState::Edit);
}

TEST_F(MovesTest, SetTagKeepsRecordAndFilterAndDropsTheRange) {
    towns.setFilter("MINOR=False");
    towns.setRange({{"CODE", "15030"}}, {{"CODE", "28079"}});
    place(towns, 1);
    towns.setTag("NAME");
    EXPECT_EQ(towns.tag(), "NAME");
    EXPECT_EQ(towns.recordNumber(), 1u);
    EXPECT_EQ(name(towns), "MADRID");
    EXPECT_TRUE(towns.prior());
    EXPECT_EQ(name(towns), "HOSPITALET") << "outside the old range, next in the new order";
    EXPECT_EQ(walk(towns), (Records{5, 2, 8, 4, 1, 6}));
}

TEST_F(MovesTest, SetTagThereAndBackLeavesTheRecord) {
    place(towns, 7);
    for (const char* tag : {"NAME", "GROUP", "SINCE", "FALLING", "", "PROVNAME", "CODE"}) {
        towns.setTag(tag);
        EXPECT_EQ(towns.recordNumber(), 7u) << tag;
    }
    EXPECT_TRUE(towns.next());
    EXPECT_EQ(towns.recordNumber(), 1u);
}

TEST_F(MovesTest, SetTagThatDoesNotHoldTheRecordLandsOnTheNextThatItHolds) {
    place(towns, 5); // ALCALA
    towns.setTag("BIG");
    EXPECT_EQ(name(towns), "BARCELONA");
    towns.setTag("NAME");
    place(towns, 3);
    towns.setTag("ONCE"); // MADRID is the record of province 28
    EXPECT_EQ(towns.recordNumber(), 6u);
}

TEST_F(MovesTest, SetTagThatTheTableLacksRaisesAndChangesNothing) {
    place(towns, 7);
    EXPECT_EQ(codeOf([&] { towns.setTag("NOSUCH"); }), ErrorCode::NotFound);
    EXPECT_EQ(towns.tag(), "CODE");
    EXPECT_EQ(towns.recordNumber(), 7u);
}

TEST_F(MovesTest, SetTagOnAClosedTableHoldsFromTheNextOpening) {
    towns.close();
    towns.setTag("name");
    EXPECT_EQ(towns.tag(), "NAME");
    towns.open();
    EXPECT_EQ(name(towns), "ALCALA");
}

TEST_F(MovesTest, OpeningWithATagThatTheTableLacksNamesBothAndStaysClosed) {
    towns.close();
    towns.setTag("NOSUCH");
    const Error error = errorOf([&] { towns.open(); });
    EXPECT_EQ(error.code(), ErrorCode::NotFound);
    EXPECT_NE(std::string(error.what()).find("TOWNS.DBF"), std::string::npos);
    EXPECT_NE(std::string(error.what()).find("NOSUCH"), std::string::npos);
    EXPECT_FALSE(towns.isOpen());
}

// --- Bookmarks

TEST_F(MovesTest, BookmarkBringsBackItsRecordInAnyOrder) {
    place(towns, 4);
    const Bookmark mark = towns.bookmark();
    towns.setTag("NAME");
    towns.last();
    EXPECT_TRUE(towns.goTo(mark));
    EXPECT_EQ(name(towns), "HOSPITALET");
    EXPECT_FALSE(towns.eof());
    EXPECT_TRUE(towns.next());
    EXPECT_EQ(name(towns), "MADRID");
}

TEST_F(MovesTest, BookmarkHiddenByTheFilterLeavesThePosition) {
    const Bookmark mark(3);
    towns.setFilter("MINOR=False");
    place(towns, 6);
    EXPECT_FALSE(towns.goTo(mark));
    EXPECT_EQ(towns.recordNumber(), 6u);
}

TEST_F(MovesTest, BookmarkHiddenByTheRangeLeavesThePosition) {
    towns.setRange({{"CODE", "28000"}}, {{"CODE", "28999"}});
    place(towns, 1);
    EXPECT_FALSE(towns.goTo(Bookmark(6)));
    EXPECT_EQ(towns.recordNumber(), 1u);
}

TEST_F(MovesTest, BookmarkThatTheTagDoesNotHoldLeavesThePosition) {
    towns.setTag("BIG");
    EXPECT_FALSE(towns.goTo(Bookmark(5)));
    EXPECT_EQ(name(towns), "BARCELONA");
}

TEST_F(MovesTest, BookmarkOfADeletedOrUnknownRecordLeavesThePosition) {
    place(towns, 5);
    const Bookmark mark = towns.bookmark();
    towns.erase();
    place(towns, 2);
    EXPECT_FALSE(towns.goTo(mark));
    EXPECT_FALSE(towns.goTo(Bookmark(99)));
    EXPECT_FALSE(towns.goTo(Bookmark()));
    EXPECT_EQ(towns.recordNumber(), 2u);
}

} // namespace
} // namespace dbase
