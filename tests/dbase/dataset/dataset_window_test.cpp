// The rows around the current one: read and shown without moving the dataset or notifying anybody.
#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>

#include "dbase/table/table.h"
#include "dbase/table/towns_fixture.h"

namespace dbase {
namespace {

class DatasetWindowTest : public TownsTest {
protected:
    static Records recordsOf(const RowsAround& around) {
        Records records;
        for (const RowsAround::Row& row : around.rows) {
            records.push_back(row.record);
        }
        return records;
    }
    /// NAME of each row, as its visitor sees it.
    static std::vector<std::string> namesOf(Dataset& table, const WindowSize& size = {100, 100}) {
        const RowsAround around = table.readAround(size);
        std::vector<std::string> names;
        table.visitRows(around, 0, around.rows.size(), [&](std::size_t) { names.push_back(name(table)); });
        return names;
    }
    /// The rows around a record are those that walking from it would show.
    static void expectLikeWalking(Dataset& table) {
        const Records all = walk(table);
        for (std::size_t i = 0; i < all.size(); ++i) {
            place(table, all[i]);
            for (const std::size_t reach : {0u, 1u, 2u, 100u}) {
                const RowsAround around = table.readAround({reach, reach});
                const std::size_t first = i - std::min(i, reach), end = std::min(all.size(), i + reach + 1);
                EXPECT_EQ(recordsOf(around), Records(all.begin() + static_cast<std::ptrdiff_t>(first),
                                                     all.begin() + static_cast<std::ptrdiff_t>(end)));
                EXPECT_EQ(around.current, i - first);
                EXPECT_FALSE(around.isCutBefore || around.isCutAfter);
            }
            EXPECT_EQ(table.recordNumber(), all[i]);
        }
    }
};

TEST_F(DatasetWindowTest, RowsAreThoseThatWalkingShows) {
    towns.open();
    for (const char* tag : {"", "CODE", "NAME", "PROVNAME", "GROUP", "SINCE", "FALLING", "ONCE", "BIG"}) {
        SCOPED_TRACE(tag);
        towns.setTag(tag);
        expectLikeWalking(towns);
    }
}

TEST_F(DatasetWindowTest, FilterAndRangeAreRespected) {
    towns.open();
    towns.setFilter("MINOR=False");
    expectLikeWalking(towns);
    towns.setTag({});
    expectLikeWalking(towns);
    towns.setTag("PROVNAME");
    towns.setRange({{"PROV", "28"}}, {{"PROV", "28"}});
    expectLikeWalking(towns);
    EXPECT_EQ(namesOf(towns), (std::vector<std::string>{"ALCALA", "MADRID"}));
    towns.clearFilter();
    expectLikeWalking(towns);
}

TEST_F(DatasetWindowTest, EmptyTableHasNoRows) {
    createEmpty();
    none.open();
    EXPECT_TRUE(none.readAround({5, 5}).rows.empty());
    EXPECT_TRUE(namesOf(none).empty());
    towns.open();
    towns.setFilter("NAME='NOWHERE'");
    EXPECT_TRUE(towns.readAround({5, 5}).rows.empty());
}

TEST_F(DatasetWindowTest, NothingMovesAndNobodyIsNotified) {
    towns.open();
    towns.last();
    EXPECT_FALSE(towns.next());
    int told = 0;
    const auto subscription = towns.listen([&](DatasetChange) { ++told; });
    const RecordNumber record = towns.recordNumber();
    const std::string shown = name(towns);
    EXPECT_EQ(namesOf(towns).size(), 8u);
    EXPECT_EQ(told, 0);
    EXPECT_EQ(towns.recordNumber(), record);
    EXPECT_EQ(name(towns), shown);
    EXPECT_TRUE(towns.eof());
    EXPECT_FALSE(towns.bof());
    EXPECT_TRUE(towns.prior());
}

TEST_F(DatasetWindowTest, CalculatedFieldsHaveTheRowsValues) {
    Field& whole = towns.addCalculated("WHOLE", 20);
    towns.setOnCalculate(
        [&](Dataset& table) { whole.setText("*" + name(table) + std::to_string(table.recordNumber())); });
    towns.open();
    towns.setTag("NAME");
    towns.first();
    const RowsAround around = towns.readAround({0, 2});
    std::vector<std::string> seen;
    towns.visitRows(around, 0, 3, [&](std::size_t) { seen.push_back(whole.text()); });
    EXPECT_EQ(seen, (std::vector<std::string>{"*ALCALA5", "*APEADERO7", "*ARANJUEZ3"}));
    EXPECT_EQ(whole.text(), "*ALCALA5");
}

TEST_F(DatasetWindowTest, CalculationMayReadTheSameTableThroughAnotherCursor) {
    Field& whole = towns.addCalculated("WHOLE", 20);
    other.open();
    towns.setOnCalculate([&](Dataset& table) {
        ASSERT_TRUE(exact(other, {{"CODE", table.field("CODE").text()}}));
        whole.setText(name(other));
    });
    towns.open();
    const RowsAround around = towns.readAround({9, 9});
    std::vector<std::string> seen;
    towns.visitRows(around, 0, 2, [&](std::size_t) { seen.push_back(whole.text()); });
    EXPECT_EQ(seen, (std::vector<std::string>{"BARCELONA", "HOSPITALET"}));
}

TEST_F(DatasetWindowTest, OnlyTheRowsAskedForAreShown) {
    towns.open();
    towns.setTag("NAME");
    place(towns, 1); // MADRID
    const RowsAround around = towns.readAround({2, 2});
    std::vector<std::size_t> seen;
    towns.visitRows(around, 1, 2, [&](std::size_t i) { seen.push_back(i); });
    EXPECT_EQ(seen, (std::vector<std::size_t>{1, 2}));
    seen.clear();
    towns.visitRows(around, 3, 100, [&](std::size_t i) { seen.push_back(i); });
    EXPECT_EQ(seen, (std::vector<std::size_t>{3}));
}

// --- Pending rows

TEST_F(DatasetWindowTest, PendingEditIsShownAsTyped) {
    towns.open();
    towns.setTag("NAME");
    place(towns, 3); // ARANJUEZ
    towns.edit();
    towns.field("NAME").setText("ZZZ");
    EXPECT_EQ(namesOf(towns, {1, 1}), (std::vector<std::string>{"APEADERO", "ZZZ", "BARCELONA"}));
    EXPECT_EQ(towns.state(), DatasetState::Edit);
    EXPECT_TRUE(towns.isModified());
    towns.post();
    EXPECT_EQ(name(towns), "ZZZ");
}

TEST_F(DatasetWindowTest, PendingNewRowStandsAfterTheRowThatWasCurrent) {
    towns.open();
    towns.setTag("NAME");
    place(towns, 3);
    towns.append();
    towns.field("NAME").setText("NEW");
    const RowsAround around = towns.readAround({2, 1});
    EXPECT_EQ(recordsOf(around), (Records{5, 7, 3, 0, 2}));
    EXPECT_EQ(around.current, 3u);
    EXPECT_EQ(namesOf(towns, {1, 1}), (std::vector<std::string>{"APEADERO", "ARANJUEZ", "NEW", "BARCELONA"}));
    EXPECT_EQ(towns.state(), DatasetState::Insert);
    EXPECT_EQ(name(towns), "NEW");
    towns.cancel();
    EXPECT_EQ(name(towns), "ARANJUEZ");
}

TEST_F(DatasetWindowTest, PendingNewRowInAnEmptyTable) {
    createEmpty();
    none.open();
    none.append();
    EXPECT_EQ(recordsOf(none.readAround({2, 2})), Records{0});
}

TEST_F(DatasetWindowTest, RowPostedOutsideTheTagHasNeighbours) {
    towns.open();
    towns.setTag("BIG"); // GROUP >= 10
    append(towns, {{"NAME", "CADIZ"}, {"GROUP", "1"}});
    EXPECT_EQ(namesOf(towns, {1, 1}), (std::vector<std::string>{"BARCELONA", "CADIZ", "MADRID"}));
    towns.edit();
    towns.field("NAME").setText("ZAMORA");
    EXPECT_EQ(namesOf(towns, {1, 1}), (std::vector<std::string>{"BARCELONA", "ZAMORA", "MADRID"}));
}

TEST_F(DatasetWindowTest, RowDeletedElsewhereKeepsItsPlaceUntilTheDatasetMoves) {
    towns.open();
    towns.setTag("NAME");
    place(towns, 3);
    other.open();
    place(other, 3);
    other.erase();
    EXPECT_EQ(namesOf(towns, {1, 1}), (std::vector<std::string>{"APEADERO", "ARANJUEZ", "BARCELONA"}));
}

// --- Refusals, and restored state

TEST_F(DatasetWindowTest, ClosedTableIsRefused) {
    EXPECT_EQ(codeOf([&] { static_cast<void>(towns.readAround({1, 1})); }), ErrorCode::BadState);
    EXPECT_EQ(codeOf([&] { towns.visitRows({}, 0, 0, [](std::size_t) {}); }), ErrorCode::BadState);
    EXPECT_EQ(codeOf([&] { towns.goToPlace(0.5); }), ErrorCode::BadState);
}

TEST_F(DatasetWindowTest, VisitorCannotMoveOrChangeTheDataset) {
    towns.open();
    const RowsAround around = towns.readAround({0, 1});
    const std::vector<std::function<void()>> forbidden = {
        [&] { towns.next(); },
        [&] { towns.first(); },
        [&] { static_cast<void>(towns.goTo(Bookmark(1))); },
        [&] {
            static_cast<void>(exact(towns, {{"CODE", "28079"}}));
        },
        [&] { towns.refresh(); },
        [&] { towns.setTag("NAME"); },
        [&] { towns.setFilter("MINOR=True"); },
        [&] { towns.append(); },
        [&] { towns.edit(); },
        [&] { towns.post(); },
        [&] { towns.erase(); },
        [&] { towns.close(); },
        [&] { towns.field("NAME").setText("X"); },
        [&] {
            static_cast<void>(towns.readAround({1, 1}));
        },
        [&] { towns.visitRows(around, 0, 1, [](std::size_t) {}); },
    };
    std::size_t refused = 0;
    towns.visitRows(around, 1, 1, [&](std::size_t) {
        for (const auto& operation : forbidden) {
            refused += codeOf(operation) == ErrorCode::BadState ? 1 : 0;
        }
    });
    EXPECT_EQ(refused, forbidden.size());
    EXPECT_EQ(name(towns), "BARCELONA");
    EXPECT_TRUE(towns.next());
}

TEST_F(DatasetWindowTest, CalculationCannotAskForTheRowsAround) {
    towns.open();
    const RowsAround around = towns.readAround({0, 1});
    std::optional<ErrorCode> code;
    towns.setOnCalculate(
        [&](Dataset&) { code = codeOf([&] { towns.visitRows(around, 0, 1, [](std::size_t) {}); }); });
    towns.next();
    EXPECT_EQ(code, ErrorCode::BadState);
}

TEST_F(DatasetWindowTest, EverythingIsPutBackWhenTheVisitorThrows) {
    Field& whole = towns.addCalculated("WHOLE", 20);
    towns.setOnCalculate([&](Dataset& table) { whole.setText(name(table)); });
    towns.open();
    towns.edit();
    towns.field("NAME").setText("TYPED");
    const RowsAround around = towns.readAround({0, 3});
    EXPECT_THROW(towns.visitRows(around, 0, 4,
                                 [](std::size_t i) {
                                     if (i == 2) {
                                         throw std::runtime_error("visitor");
                                     }
                                 }),
                 std::runtime_error);
    EXPECT_EQ(towns.state(), DatasetState::Edit);
    EXPECT_EQ(name(towns), "TYPED");
    EXPECT_EQ(whole.text(), "TYPED");
    EXPECT_EQ(towns.recordNumber(), 2u);
    towns.cancel();
    EXPECT_EQ(name(towns), "BARCELONA");
}

TEST_F(DatasetWindowTest, RowsOfAnotherTableAreRefused) {
    towns.open();
    RowsAround around = towns.readAround({1, 1});
    around.bytes.pop_back();
    EXPECT_EQ(codeOf([&] { towns.visitRows(around, 0, 1, [](std::size_t) {}); }), ErrorCode::BadState);
}

// --- How far it reads

TEST_F(DatasetWindowTest, GivesUpAfterTooManyHiddenRows) {
    towns.open();
    for (const char* tag : {"NAME", ""}) {
        SCOPED_TRACE(tag);
        towns.setTag(tag);
        towns.setFilter("NAME='ALCALA' .OR. NAME='VALENCIA'");
        place(towns, 5);
        RowsAround around = towns.readAround({.before = 3, .after = 3, .mostHidden = 0});
        const bool isNext = *tag == '\0'; // by record number VALENCIA (6) follows ALCALA (5)
        EXPECT_EQ(recordsOf(around), isNext ? (Records{5, 6}) : Records{5});
        EXPECT_TRUE(around.isCutAfter);
        around = towns.readAround({.before = 3, .after = 3, .mostHidden = 7});
        EXPECT_EQ(recordsOf(around), (Records{5, 6}));
        EXPECT_FALSE(around.isCutBefore || around.isCutAfter);
        towns.clearFilter();
    }
}

TEST_F(DatasetWindowTest, LimitIsForHiddenRowsOnly) {
    towns.open();
    const RowsAround around = towns.readAround({.before = 100, .after = 100, .mostHidden = 0});
    EXPECT_EQ(around.rows.size(), 8u);
    EXPECT_FALSE(around.isCutBefore || around.isCutAfter);
}

TEST_F(DatasetWindowTest, LifetimeExpiresWithTheDataset) {
    auto table = std::make_unique<Dataset>("DB", "TOWNS");
    const std::weak_ptr<const void> life = table->lifetime();
    EXPECT_FALSE(life.expired());
    table.reset();
    EXPECT_TRUE(life.expired());
}

} // namespace
} // namespace dbase
