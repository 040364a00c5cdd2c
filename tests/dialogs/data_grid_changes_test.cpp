// The data grid follows its table: filters, ranges, tags, pending rows, other workstations, faults, and the
// end of what it is bound to.
#include <gtest/gtest.h>

#include <filesystem>
#include <stdexcept>

#include "GridFixture.h"
#include "dbase/system/error.h"

namespace grid_tests {
namespace {

using dbase::DatasetState;

class DataGridChangesTest : public GridTest {
protected:
    /// Shows the window before there is a table.
    void startClosed(int rows) {
        makeTable(rows);
        ambrel::test::showActive(window);
        giveRoom(roomWanted);
        grid->setFocus();
    }
    /// Empties the table's files, as a failing server would.
    void loseTheFile() {
        leaveUnchecked();
        std::filesystem::resize_file(folder / "ROWS.DBF", 0);
        std::filesystem::resize_file(folder / "ROWS.MDX", 0);
    }
    [[nodiscard]] std::string file() const { return folder / "ROWS.DBF"; }
};

// --- Order, range, filter

TEST_F(DataGridChangesTest, FollowsTheFilter) {
    start(100);
    table->setFilter("HIDDEN=False");
    EXPECT_EQ(shown(), "[0] 100 200 300 400 500 600 700 800 900");
    press(Qt::Key_Down);
    EXPECT_EQ(shown(), "0 [100] 200 300 400 500 600 700 800 900");
    table->clearFilter();
    EXPECT_EQ(grid->cellText(grid->currentRow(), 0), codeOf(10).c_str());
    EXPECT_EQ(grid->visibleRowCount(), 10);
}

TEST_F(DataGridChangesTest, FilterThatHidesEverythingShowsNothing) {
    start(30);
    table->setFilter("CODE='999999'");
    EXPECT_EQ(grid->visibleRowCount(), 0);
    EXPECT_EQ(grid->currentRow(), -1);
    table->clearFilter();
    EXPECT_EQ(grid->visibleRowCount(), 10);
}

TEST_F(DataGridChangesTest, FollowsTheRange) {
    start(100);
    table->setRange({{"CODE", codeOf(20)}}, {{"CODE", codeOf(24)}});
    EXPECT_EQ(shown(), rowsOf(20, 24, 20));
    press(Qt::Key_PageDown);
    EXPECT_EQ(shown(), rowsOf(20, 24, 24));
    EXPECT_FALSE(bar().isEnabled());
    table->clearRange();
    EXPECT_EQ(grid->visibleRowCount(), 10);
    EXPECT_EQ(code(), codeOf(24));
}

TEST_F(DataGridChangesTest, TagChangeKeepsTheRowAndItsPlace) {
    start(100);
    goTo(50);
    press(Qt::Key_Down);
    ASSERT_EQ(shown(), rowsOf(48, 57, 51));
    table->setTag("NAME");
    EXPECT_EQ(shown(), "540 530 520 [510] 500 490 480 470 460 450");
    press(Qt::Key_Down);
    EXPECT_EQ(code(), codeOf(50));
}

TEST_F(DataGridChangesTest, NeighboursAfterManyHiddenRowsAreLookedForWhileNobodyTypes) {
    std::vector<ambrel::test::Row> rows;
    for (int i = 0; i < 50'000; ++i) {
        rows.push_back({std::to_string(100'000 + i), "N", i == 0 || i >= 49'995 ? "F" : "T"});
    }
    createTable(ambrel::test::defineTable("ROWS", {"CODE C6", "NAME C20", "HIDDEN L"}, {"CODE"}), rows);
    table->open();
    ambrel::test::showActive(window);
    giveRoom(roomWanted);
    table->setFilter("HIDDEN=False");
    EXPECT_EQ(grid->visibleRowCount(), 1) << "a key does not wait for a scan of the table";
    EXPECT_TRUE(QTest::qWaitFor([&] { return grid->visibleRowCount() == 6; }));
}

// --- Opening and closing

TEST_F(DataGridChangesTest, FollowsOpeningAndClosing) {
    startClosed(30);
    EXPECT_EQ(grid->visibleRowCount(), 0);
    press(Qt::Key_Down);
    wheel(1);
    grid->refresh();
    table->open();
    EXPECT_EQ(shown(), rowsOf(0, 9, 0));
    table->close();
    EXPECT_EQ(grid->visibleRowCount(), 0);
    EXPECT_EQ(grid->currentRow(), -1);
    press(Qt::Key_PageDown);
    click(0);
}

TEST_F(DataGridChangesTest, ShowsTheRowsWithoutBeingAsked) {
    startClosed(30);
    table->open();
    QCoreApplication::processEvents();
    EXPECT_EQ(view().model()->rowCount(), 10);
    EXPECT_EQ(view().currentIndex().row(), 0);
    table->next();
    QCoreApplication::processEvents();
    EXPECT_EQ(view().currentIndex().row(), 1);
    EXPECT_TRUE(view().selectionModel()->isRowSelected(1));
}

TEST_F(DataGridChangesTest, IsEmptyOnceItsSourceIsTakenAway) {
    start(30);
    grid->setDataSource(nullptr);
    EXPECT_EQ(grid->visibleRowCount(), 0);
    press(Qt::Key_Down);
    EXPECT_EQ(code(), codeOf(0));
    grid->setDataSource(&*source);
    EXPECT_EQ(grid->visibleRowCount(), 10);
}

TEST_F(DataGridChangesTest, IsEmptyOnceItsSourceLosesTheDataset) {
    start(30);
    source->setDataset(nullptr);
    EXPECT_EQ(grid->visibleRowCount(), 0);
    source->setDataset(&*table);
    EXPECT_EQ(grid->visibleRowCount(), 10);
}

TEST_F(DataGridChangesTest, OutlivesItsDataset) {
    start(30);
    table.reset();
    press(Qt::Key_Down);
    wheel(-1);
    grid->refresh();
    EXPECT_EQ(grid->visibleRowCount(), 0);
    EXPECT_EQ(source->dataset(), nullptr);
}

TEST_F(DataGridChangesTest, SourceDestroyedBeforeTheGrid) {
    start(30);
    source.reset();
    press(Qt::Key_Down);
    grid->refresh();
    EXPECT_EQ(grid->visibleRowCount(), 0);
}

TEST_F(DataGridChangesTest, GridDestroyedBeforeTheDataset) {
    start(30);
    table->next();
    delete grid;
    table->next();
    table->close();
}

TEST_F(DataGridChangesTest, NothingIsReadWhileItIsHidden) {
    startClosed(30);
    window.hide();
    int calculated = 0;
    table->setOnCalculate([&](dbase::Dataset&) { ++calculated; });
    table->open();
    const int ofTheTable = calculated;
    QCoreApplication::processEvents();
    EXPECT_EQ(calculated, ofTheTable);
    window.show();
    QCoreApplication::processEvents();
    EXPECT_EQ(view().model()->rowCount(), 10);
}

// --- Pending rows

TEST_F(DataGridChangesTest, PendingNewRowIsShownAndStaysPending) {
    start(30);
    press(Qt::Key_Down);
    press(Qt::Key_Down);
    table->append();
    table->field("CODE").setText("777777");
    QCoreApplication::processEvents();
    window.repaint();
    EXPECT_EQ(grid->currentRow(), 3) << "below the row that was current";
    EXPECT_EQ(grid->cellText(3, 0), "777777");
    EXPECT_EQ(grid->cellText(3, 2), "<777777 >");
    EXPECT_EQ(grid->cellText(2, 0), codeOf(2).c_str());
    EXPECT_EQ(grid->cellText(4, 0), codeOf(3).c_str());
    grid->refresh();
    EXPECT_EQ(table->state(), DatasetState::Insert);
    EXPECT_EQ(table->field("CODE").text(), "777777");
    table->cancel();
    EXPECT_EQ(shown(), rowsOf(0, 9, 2));
}

TEST_F(DataGridChangesTest, MoveByTheUserCancelsANewRow) {
    start(30);
    table->append();
    press(Qt::Key_Down);
    EXPECT_EQ(table->state(), DatasetState::Browse);
    EXPECT_EQ(shown(), rowsOf(0, 9, 1));
    table->append();
    press(Qt::Key_Up);
    EXPECT_EQ(table->state(), DatasetState::Browse);
    EXPECT_EQ(shown(), rowsOf(0, 9, 1)) << "the row above the new one";
    table->append();
    click(5);
    EXPECT_EQ(table->state(), DatasetState::Browse);
    EXPECT_EQ(code(), codeOf(4)) << "the new row was shown above it";
}

TEST_F(DataGridChangesTest, ClickOnThePendingRowLeavesItPending) {
    start(30);
    table->append();
    click(grid->currentRow());
    EXPECT_EQ(table->state(), DatasetState::Insert);
    table->cancel();
    table->edit();
    click(grid->currentRow());
    EXPECT_EQ(table->state(), DatasetState::Edit);
}

TEST_F(DataGridChangesTest, NewRowInAnEmptyTable) {
    start(0);
    table->append();
    table->field("CODE").setText("5");
    EXPECT_EQ(grid->visibleRowCount(), 1);
    EXPECT_EQ(grid->currentRow(), 0);
    EXPECT_EQ(grid->cellText(0, 0), "5");
    table->cancel();
    EXPECT_EQ(grid->visibleRowCount(), 0);
}

TEST_F(DataGridChangesTest, EditedRowShowsWhatIsTyped) {
    start(30);
    press(Qt::Key_Down);
    table->edit();
    table->field("NAME").setText("NEW");
    QCoreApplication::processEvents();
    EXPECT_EQ(grid->cellText(1, 1), "NEW");
    EXPECT_EQ(grid->cellText(1, 2), "<001010 NEW>");
    EXPECT_EQ(grid->cellText(2, 2), "<001020 N99997>");
    EXPECT_EQ(table->state(), DatasetState::Edit);
    EXPECT_TRUE(table->isModified());
    press(Qt::Key_Down);
    EXPECT_EQ(table->state(), DatasetState::Browse);
    EXPECT_EQ(grid->cellText(1, 1), "N99998");
}

TEST_F(DataGridChangesTest, PostedRowComesToItsPlace) {
    start(30);
    table->append();
    table->field("CODE").setText("001235");
    table->post();
    EXPECT_EQ(grid->cellText(grid->currentRow(), 0), "001235");
    EXPECT_EQ(grid->cellText(grid->currentRow() - 1, 0), codeOf(23).c_str());
}

// --- Rows that come and go

TEST_F(DataGridChangesTest, DeletedRowLeavesTheOthersInPlace) {
    start(30);
    pressTimes(Qt::Key_Down, 12);
    ASSERT_EQ(shown(), rowsOf(3, 12, 12));
    pressTimes(Qt::Key_Up, 4);
    table->erase();
    EXPECT_EQ(shown(), "30 40 50 60 70 [90] 100 110 120 130");
}

TEST_F(DataGridChangesTest, RowsThatAnotherDatasetDeletedGoAtRefresh) {
    start(30);
    eraseElsewhere(3);
    eraseElsewhere(0);
    grid->refresh();
    EXPECT_EQ(shown(), "[10] 20 40 50 60 70 80 90 100 110");
    EXPECT_EQ(code(), codeOf(1));
}

TEST_F(DataGridChangesTest, RowsThatAnotherDatasetAddedComeAtRefresh) {
    start(30);
    insertElsewhere("001015");
    grid->refresh();
    EXPECT_EQ(shown(), "[0] 10 15 20 30 40 50 60 70 80");
    EXPECT_EQ(grid->cellText(2, 2), "<001015 >");
}

TEST_F(DataGridChangesTest, ClickOnARowThatIsGoneShowsTheTruth) {
    start(30);
    ASSERT_EQ(grid->visibleRowCount(), 10);
    eraseElsewhere(4);
    click(4);
    EXPECT_EQ(shown(), "[0] 10 20 30 50 60 70 80 90 100");
}

TEST_F(DataGridChangesTest, LastRowDeletedElsewhere) {
    start(2);
    press(Qt::Key_End);
    eraseElsewhere(1);
    grid->refresh();
    EXPECT_EQ(shown(), "[0]");
    eraseElsewhere(0);
    grid->refresh();
    EXPECT_EQ(grid->visibleRowCount(), 0);
}

// --- Faults

TEST_F(DataGridChangesTest, LostFileIsReportedOnceAndPaintsNothing) {
    start(30);
    loseTheFile();
    std::string text;
    try {
        table->refresh();
    } catch (const dbase::Error& error) {
        text = error.what();
    }
    ASSERT_FALSE(text.empty());
    messages.expect(QString::fromStdString(text), QStringLiteral("Atención"));
    press(Qt::Key_Down);
    EXPECT_TRUE(messages.isDone());
    EXPECT_EQ(grid->visibleRowCount(), 0);
    press(Qt::Key_Down);
    wheel(-1);
    window.resize(window.width() + 50, window.height() + 50);
    QCoreApplication::processEvents();
    window.repaint();
    EXPECT_EQ(messages.shown().size(), 1u);
}

TEST_F(DataGridChangesTest, FaultOfACalculationIsReportedOnceUntilARefreshSucceeds) {
    start(30);
    bool fails = true;
    table->setOnCalculate([&](dbase::Dataset& rows) {
        if (fails && rows.field("CODE").text() == codeOf(5)) {
            throw std::runtime_error("no puede ser");
        }
    });
    messages.expect("no puede ser", QStringLiteral("Atención"));
    table->next();
    QCoreApplication::processEvents();
    EXPECT_TRUE(messages.isDone());
    EXPECT_EQ(grid->visibleRowCount(), 0);
    table->next();
    QCoreApplication::processEvents();
    EXPECT_EQ(code(), codeOf(2)) << "the table itself goes on";
    messages.expect("no puede ser", QStringLiteral("Atención"));
    grid->refresh();
    EXPECT_TRUE(messages.isDone());
    fails = false;
    table->next();
    EXPECT_EQ(grid->visibleRowCount(), 0);
    grid->refresh();
    EXPECT_EQ(shown(), rowsOf(1, 10, 3));
}

TEST_F(DataGridChangesTest, ColumnThatTheTableLacksIsReported) {
    start(30);
    messages.expect(QString::fromStdString(file() + ": no hay ningún campo «NONE»"),
                    QStringLiteral("Atención"));
    grid->setColumns({{"NONE", "None"}});
    QCoreApplication::processEvents();
    EXPECT_EQ(grid->visibleRowCount(), 0);
}

} // namespace
} // namespace grid_tests
