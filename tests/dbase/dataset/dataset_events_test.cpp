// Calculated fields, the after-open hook and notifications.
#include <gtest/gtest.h>

#include <stdexcept>

#include "dbase/dataset/data_source.h"
#include "dbase/table/towns_fixture.h"

namespace dbase {
namespace {

// --- Calculated fields

class CalculationTest : public TownsTest {
protected:
    CalculationTest() : whole_(towns.addCalculated("WHOLE", 14)) {
        towns.setOnCalculate([this](Dataset& table) {
            ++calculations_;
            if (table.autoCalculates()) {
                whole_.setText(table.field("NAME").text() + "," + table.field("CODE").text());
            }
        });
        towns.open();
    }

    Field& whole_;
    int calculations_ = 0;
};

TEST_F(CalculationTest, RunsForEveryRecordThatBecomesCurrent) {
    EXPECT_EQ(whole_.text(), "BARCELONA,0801") << "cut to the declared width";
    towns.next();
    EXPECT_EQ(whole_.text(), "HOSPITALET,081");
    towns.last();
    EXPECT_EQ(whole_.text(), "VALENCIA,46250");
    towns.prior();
    EXPECT_EQ(whole_.text(), "MADRID,28079");
    ASSERT_TRUE(exact(towns, {{"CODE", "28005"}}));
    EXPECT_EQ(whole_.text(), "ALCALA,28005");
    towns.setTag("NAME");
    EXPECT_EQ(whole_.text(), "ALCALA,28005");
    place(towns, 8);
    EXPECT_EQ(whole_.text(), "CORUNA,15030");
    towns.erase();
    EXPECT_EQ(whole_.text(), "HOSPITALET,081");
}

TEST_F(CalculationTest, RunsForEveryRecordOfALongWalk) {
    towns.first();
    calculations_ = 0;
    while (towns.next()) {
        EXPECT_EQ(whole_.text(), (name(towns) + "," + towns.field("CODE").text()).substr(0, 14));
    }
    EXPECT_EQ(calculations_, 7);
}

TEST_F(CalculationTest, FollowsThePendingRow) {
    towns.append();
    EXPECT_EQ(whole_.text(), ",");
    towns.field("NAME").setText("LUGO");
    EXPECT_EQ(whole_.text(), "LUGO,");
    towns.cancel();
    EXPECT_EQ(whole_.text(), "BARCELONA,0801");
    towns.edit();
    towns.field("NAME").setText("BCN");
    EXPECT_EQ(whole_.text(), "BCN,08019");
    towns.post();
    EXPECT_EQ(whole_.text(), "BCN,08019");
}

TEST_F(CalculationTest, ACalculatedTextReadsAsItsNumberToo) {
    towns.setOnCalculate([this](Dataset&) { whole_.setInteger(4711); });
    towns.next();
    EXPECT_EQ(whole_.integer(), 4711);
    EXPECT_EQ(whole_.number(), 4711.0);
    EXPECT_EQ(whole_.view(), "4711");
}

TEST_F(CalculationTest, AHandlerThatCompletesThePendingRowDoesNotRunItselfAgain) {
    towns.setOnCalculate([this](Dataset& table) {
        ++calculations_;
        if (table.state() == DatasetState::Insert) {
            table.field("PROV").setText(table.field("CODE").text().substr(0, 2));
        }
    });
    towns.append();
    calculations_ = 0;
    towns.field("CODE").setText("28079");
    EXPECT_EQ(towns.field("PROV").text(), "28");
    EXPECT_EQ(calculations_, 1);
}

TEST_F(CalculationTest, SwitchedOffSetsNothing) {
    EXPECT_TRUE(towns.autoCalculates()) << "on by default";
    towns.setAutoCalculates(false);
    towns.next();
    EXPECT_EQ(whole_.text(), "");
    EXPECT_TRUE(whole_.isNull());
    towns.setAutoCalculates(true);
    towns.refresh();
    EXPECT_EQ(whole_.text(), "HOSPITALET,081");
}

TEST_F(CalculationTest, EmptyAndClosedTablesReadBlank) {
    towns.setFilter("PROV='99'");
    EXPECT_EQ(whole_.text(), "");
    towns.clearFilter();
    EXPECT_NE(whole_.text(), "");
    towns.close();
    EXPECT_EQ(whole_.text(), "");
}

TEST_F(CalculationTest, CalculatedFieldIsSetByItsEventOnly) {
    towns.edit();
    EXPECT_EQ(codeOf([&] { whole_.setText("X"); }), ErrorCode::BadState);
    EXPECT_EQ(codeOf([&] { whole_.clear(); }), ErrorCode::BadState);
    EXPECT_FALSE(towns.isModified());
}

TEST_F(CalculationTest, EventMayWalkAnotherCursorOfTheSameTable) {
    towns.close();
    other.setTag("NAME");
    towns.setOnCalculate([this](Dataset& table) {
        other.open();
        const bool hasNext =
            other.seek({{"NAME", table.field("NAME").text()}}, SeekMode::Exact) && other.next();
        whole_.setText(hasNext ? other.field("NAME").text() : "-");
        other.close();
    });
    towns.setTag("NAME");
    towns.open();
    EXPECT_EQ(whole_.text(), "APEADERO");
    towns.last();
    EXPECT_EQ(whole_.text(), "-");
}

TEST_F(CalculationTest, FaultInTheEventPassesAndLeavesTheDatasetUsable) {
    towns.setOnCalculate([](Dataset&) { throw std::runtime_error("no"); });
    EXPECT_THROW(towns.next(), std::runtime_error);
    EXPECT_EQ(towns.recordNumber(), 4u);
    towns.setOnCalculate({});
    EXPECT_TRUE(towns.next());
    EXPECT_EQ(towns.recordNumber(), 8u);
}

// --- After-open hook

TEST_F(TownsTest, AfterOpenHookSeesTheOpenTableOnItsFirstRecord) {
    RecordNumber seen = 0;
    towns.setAfterOpen([&](Dataset& table) {
        EXPECT_TRUE(table.isOpen());
        seen = table.recordNumber();
    });
    towns.open();
    EXPECT_EQ(seen, 2u);
    towns.close();
    seen = 0;
    towns.open();
    EXPECT_EQ(seen, 2u) << "at every opening";
    towns.open();
}

TEST_F(TownsTest, FilterOfTheAfterOpenHookHoldsFromTheFirstRecordOn) {
    towns.setAfterOpen([](Dataset& table) { table.setFilter("MINOR=True"); });
    towns.open();
    EXPECT_EQ(towns.recordNumber(), 3u);
    EXPECT_TRUE(towns.bof());
    EXPECT_EQ(walk(towns), (Records{3, 7}));
}

TEST_F(TownsTest, FaultInTheAfterOpenHookPassesAndKeepsTheTableClosed) {
    std::vector<DatasetChange> told;
    const auto subscription = towns.listen([&](DatasetChange change) { told.push_back(change); });
    towns.setAfterOpen([](Dataset&) { throw std::runtime_error("no"); });
    EXPECT_THROW(towns.open(), std::runtime_error);
    EXPECT_FALSE(towns.isOpen());
    EXPECT_EQ(name(towns), "");
    EXPECT_TRUE(told.empty());
    towns.setAfterOpen({});
    towns.open();
    EXPECT_EQ(name(towns), "BARCELONA");
}

// --- Notifications

class NotificationTest : public TownsTest {
protected:
    using Changes = std::vector<DatasetChange>;

    NotificationTest() {
        subscription_ = towns.listen([this](DatasetChange change) { told_.push_back(change); });
        towns.open();
    }
    Changes told() { return std::exchange(told_, {}); }

    Changes told_;
    Dataset::Subscription subscription_;
};

TEST_F(NotificationTest, OpeningAndClosingTellOnce) {
    EXPECT_EQ(told(), (Changes{DatasetChange::Opened}));
    towns.close();
    EXPECT_EQ(told(), (Changes{DatasetChange::Closed}));
    towns.close();
    EXPECT_EQ(told(), (Changes{}));
}

TEST_F(NotificationTest, MovesTellSynchronously) {
    told();
    RecordNumber seen = 0;
    const auto second = towns.listen([&](DatasetChange) { seen = towns.recordNumber(); });
    towns.next();
    EXPECT_EQ(told(), (Changes{DatasetChange::Moved}));
    EXPECT_EQ(seen, 4u);
    towns.last();
    EXPECT_TRUE(nearest(towns, {{"CODE", "28"}}));
    EXPECT_TRUE(towns.goTo(Bookmark(1)));
    towns.refresh();
    EXPECT_EQ(told(), (Changes(4, DatasetChange::Moved)));
    EXPECT_FALSE(exact(towns, {{"CODE", "X"}}));
    EXPECT_FALSE(towns.goTo(Bookmark(99)));
    EXPECT_EQ(told(), (Changes{})) << "nothing moved";
}

TEST_F(NotificationTest, OrderMeansThatEverythingMayBeDifferent) {
    told();
    towns.setTag("NAME");
    towns.setFilter("PROV='28'");
    towns.setRange({{"NAME", "A"}}, {{"NAME", "B"}});
    towns.clearRange();
    towns.clearFilter();
    EXPECT_EQ(told(), (Changes(5, DatasetChange::Order)));
    towns.setTag("NAME");
    towns.clearRange();
    EXPECT_EQ(told(), (Changes{})) << "nothing changed";
}

TEST_F(NotificationTest, EditingReportsStateAndField) {
    told();
    towns.edit();
    EXPECT_EQ(told(), (Changes{DatasetChange::State}));
    towns.field("NAME").setText("X");
    EXPECT_EQ(told(), (Changes{DatasetChange::Field}));
    towns.post();
    EXPECT_EQ(told(), (Changes{DatasetChange::State, DatasetChange::Order}));
    towns.append();
    towns.cancel();
    EXPECT_EQ(told(), (Changes{DatasetChange::State, DatasetChange::Moved, DatasetChange::State,
                               DatasetChange::Moved}));
    towns.erase();
    EXPECT_EQ(told(), (Changes{DatasetChange::Order}));
}

TEST_F(NotificationTest, SuspendedOnesAreReportedOnceAsOrderAtTheResume) {
    told();
    towns.suspendNotifications();
    towns.suspendNotifications();
    towns.next();
    towns.setTag("NAME");
    towns.resumeNotifications();
    EXPECT_EQ(told(), (Changes{})) << "it nests";
    towns.resumeNotifications();
    EXPECT_EQ(told(), (Changes{DatasetChange::Order}));
    towns.next();
    EXPECT_EQ(told(), (Changes{DatasetChange::Moved}));
    {
        const NotificationPause pause(towns);
        towns.first();
    }
    EXPECT_EQ(told(), (Changes{DatasetChange::Order}));
    towns.resumeNotifications();
    EXPECT_EQ(told(), (Changes{})) << "a resume too many is none";
    towns.next();
    EXPECT_EQ(told(), (Changes{DatasetChange::Moved}));
}

TEST_F(NotificationTest, EndsWithTheSubscription) {
    subscription_.reset();
    told();
    towns.next();
    EXPECT_EQ(told(), (Changes{}));
}

TEST_F(NotificationTest, ListenersMayComeAndGoWhileTheyAreNotified) {
    Dataset::Subscription first, second;
    int calls = 0;
    first = towns.listen([&](DatasetChange) {
        first.reset();
        second = towns.listen([&](DatasetChange) { ++calls; });
    });
    towns.next();
    EXPECT_EQ(calls, 0);
    towns.next();
    EXPECT_EQ(calls, 1);
}

TEST_F(NotificationTest, FaultOfAListenerAtTheEndOfAPauseIsLost) {
    const auto faulty = towns.listen([](DatasetChange) { throw std::runtime_error("no"); });
    {
        const NotificationPause pause(towns);
        towns.next();
    }
    EXPECT_THROW(towns.next(), std::runtime_error) << "elsewhere it passes";
}

TEST_F(NotificationTest, AListenerThatAnotherOneEndsIsNotNotified) {
    bool isTold = false;
    Dataset::Subscription second;
    const auto first = towns.listen([&](DatasetChange) { second.reset(); });
    second = towns.listen([&](DatasetChange) { isTold = true; });
    towns.next();
    EXPECT_FALSE(isTold);
}

// --- Data source

TEST_F(NotificationTest, DataSourceOfADestroyedDatasetHasNone) {
    auto passing = std::make_unique<Dataset>("DB", "TOWNS");
    DataSource source(passing.get());
    EXPECT_EQ(source.dataset(), passing.get());
    passing.reset();
    EXPECT_EQ(source.dataset(), nullptr);
}

TEST_F(NotificationTest, DataSourcePassesOnWhatItsDatasetReports) {
    DataSource source(&towns);
    Changes passed;
    const auto listening = source.listen([&](DatasetChange change) { passed.push_back(change); });
    towns.next();
    EXPECT_EQ(std::exchange(passed, {}), (Changes{DatasetChange::Moved}));
    source.setDataset(&other);
    EXPECT_EQ(std::exchange(passed, {}), (Changes{DatasetChange::Closed})) << "the new one is closed";
    towns.next();
    EXPECT_EQ(passed, (Changes{}));
    other.open();
    EXPECT_EQ(std::exchange(passed, {}), (Changes{DatasetChange::Opened}));
    source.setDataset(nullptr);
    EXPECT_EQ(std::exchange(passed, {}), (Changes{DatasetChange::Closed}));
    other.next();
    EXPECT_EQ(passed, (Changes{}));
    source.setDataset(&towns);
    EXPECT_EQ(std::exchange(passed, {}), (Changes{DatasetChange::Opened}));
    EXPECT_EQ(source.dataset(), &towns);
}

} // namespace
} // namespace dbase
