// The place of a row in its order, from 0 to 1: what a scroll bar shows and where it leads.
#include <gtest/gtest.h>

#include <algorithm>

#include "dbase/table/towns_fixture.h"

namespace dbase {
namespace {

class DatasetPlaceTest : public ambrel::test::TableTest {
protected:
    static constexpr int rows = 3000;
    DatasetPlaceTest() {
        std::vector<ambrel::test::Row> values;
        for (int i = 0; i < rows; ++i) {
            values.push_back({std::to_string(10'000 + i), i % 2 == 0 ? "T" : "F"});
        }
        createTable(ambrel::test::defineTable("LONG", {"CODE C5", "EVEN L"}, {"CODE"}), values);
        table.open();
    }
    [[nodiscard]] int row() { return table.field("CODE").integer() - 10'000; }
    [[nodiscard]] double here() { return table.readAround({0, 0}).rows.at(0).place; }

    Dataset table{"DB", "LONG", "CODE"};
};

TEST_F(DatasetPlaceTest, PlacesGrowWithTheOrder) {
    for (const char* tag : {"CODE", ""}) {
        SCOPED_TRACE(tag);
        table.setTag(tag);
        table.first();
        EXPECT_EQ(here(), 0);
        const RowsAround all = table.readAround({0, rows});
        ASSERT_EQ(all.rows.size(), std::size_t{rows});
        EXPECT_TRUE(std::is_sorted(all.rows.begin(), all.rows.end(),
                                   [](const auto& a, const auto& b) { return a.place < b.place; }));
        EXPECT_NEAR(all.rows[rows / 2].place, 0.5, 0.05);
        EXPECT_GT(all.rows[rows - 1].place, 0.95);
        EXPECT_LE(all.rows[rows - 1].place, 1);
    }
}

TEST_F(DatasetPlaceTest, GoingToAPlaceLandsWhereItWasRead) {
    for (const char* tag : {"CODE", ""}) {
        SCOPED_TRACE(tag);
        table.setTag(tag);
        for (const int wanted : {0, 1, 700, 1500, 2998, 2999}) {
            ASSERT_TRUE(table.goTo(Bookmark(static_cast<RecordNumber>(wanted + 1))));
            const double place = here();
            table.first();
            int told = 0;
            const auto subscription = table.listen([&](DatasetChange) { ++told; });
            EXPECT_TRUE(table.goToPlace(place));
            EXPECT_NEAR(row(), wanted, 1);
            EXPECT_EQ(told, 1);
        }
        EXPECT_TRUE(table.goToPlace(-1));
        EXPECT_EQ(row(), 0);
        EXPECT_TRUE(table.goToPlace(2));
        EXPECT_EQ(row(), rows - 1);
    }
}

TEST_F(DatasetPlaceTest, PlacesOfARangeCoverTheRange) {
    table.setRange({{"CODE", "11000"}}, {{"CODE", "11200"}});
    EXPECT_NEAR(here(), 0, 0.01);
    table.last();
    EXPECT_NEAR(here(), 1, 0.02);
    for (const double place : {0.0, 0.25, 0.5, 0.75, 1.0}) {
        EXPECT_TRUE(table.goToPlace(place));
        EXPECT_NEAR(row(), 1000 + 200 * place, 25);
        EXPECT_NEAR(here(), place, 0.02);
    }
    table.setRange({{"CODE", "3"}}, {{"CODE", "4"}});
    EXPECT_FALSE(table.goToPlace(0.5));
}

TEST_F(DatasetPlaceTest, ARowJustPostedHasItsPlace) {
    for (const char* tag : {"CODE", ""}) {
        SCOPED_TRACE(tag);
        table.setTag(tag);
        table.append();
        table.field("CODE").setText("11500");
        table.post();
        const double posted = here();
        table.refresh();
        EXPECT_EQ(posted, here());
        EXPECT_GT(posted, 0.4);
        table.erase();
    }
}

TEST_F(DatasetPlaceTest, HiddenRowsAtAPlaceGiveTheNextOne) {
    table.setFilter("EVEN=True");
    EXPECT_TRUE(table.goToPlace(0.5));
    EXPECT_EQ(row() % 2, 0);
    table.setFilter("CODE='10007'");
    EXPECT_TRUE(table.goToPlace(0.9));
    EXPECT_EQ(row(), 7) << "none behind it: the one before";
}

TEST_F(DatasetPlaceTest, EmptyTableHasNoPlaces) {
    table.setFilter("CODE='X'");
    EXPECT_FALSE(table.goToPlace(0.5));
    createTable(ambrel::test::defineTable("EMPTY", {"CODE C5"}, {"CODE"}), {});
    for (const char* tag : {"CODE", ""}) {
        Dataset empty("DB", "EMPTY", tag);
        empty.open();
        EXPECT_FALSE(empty.goToPlace(0.5));
        EXPECT_TRUE(empty.isEmpty());
    }
}

} // namespace
} // namespace dbase
