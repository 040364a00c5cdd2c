// The data grid: the rows it shows, and the moves of keys and mouse.
#include <gtest/gtest.h>

#include <QHeaderView>
#include <QSignalSpy>

#include "GridFixture.h"

namespace grid_tests {
namespace {

class DataGridTest : public GridTest {};

TEST_F(DataGridTest, ShowsTheRowsThatFitAndNoMore) {
    start(1000);
    EXPECT_EQ(shown(), rowsOf(0, 9, 0));
    EXPECT_EQ(grid->cellText(3, 0), "001030");
    EXPECT_EQ(grid->cellText(3, 1), "N99996");
    EXPECT_EQ(view().model()->rowCount(), 10);
}

TEST_F(DataGridTest, NeighbourRowsAreCalculatedToo) {
    start(50);
    EXPECT_EQ(grid->cellText(0, 2), "<001000 N99999>");
    EXPECT_EQ(grid->cellText(4, 2), "<001040 N99995>");
    EXPECT_EQ(table->field("WHOLE").text(), "<001000 N99999>");
}

TEST_F(DataGridTest, EmptyTableShowsNothing) {
    start(0);
    EXPECT_EQ(grid->visibleRowCount(), 0);
    EXPECT_EQ(grid->currentRow(), -1);
    for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Up, Qt::Key_PageDown, Qt::Key_Home, Qt::Key_End}) {
        press(key);
    }
    wheel(-1);
    click(0);
    EXPECT_FALSE(bar().isEnabled());
    EXPECT_EQ(grid->cellText(0, 0), "");
}

TEST_F(DataGridTest, OneRowIsFirstAndLast) {
    start(1);
    EXPECT_EQ(shown(), "[0]");
    pressTimes(Qt::Key_Down, 2);
    EXPECT_TRUE(table->eof());
    press(Qt::Key_Up);
    EXPECT_TRUE(table->bof());
    EXPECT_EQ(shown(), "[0]");
    EXPECT_FALSE(bar().isEnabled());
}

TEST_F(DataGridTest, FewerRowsThanFit) {
    start(4);
    EXPECT_EQ(shown(), rowsOf(0, 3, 0));
    press(Qt::Key_PageDown);
    EXPECT_EQ(shown(), rowsOf(0, 3, 3));
    press(Qt::Key_PageUp);
    EXPECT_EQ(shown(), rowsOf(0, 3, 0));
    wheel(-1);
    EXPECT_EQ(shown(), rowsOf(0, 3, 3));
    EXPECT_FALSE(bar().isEnabled());
    QTest::mouseClick(view().viewport(), Qt::LeftButton, {},
                      view().viewport()->rect().bottomLeft() - QPoint(-5, 5));
    EXPECT_EQ(shown(), rowsOf(0, 3, 3)) << "a click below the rows moves nothing";
}

TEST_F(DataGridTest, WindowStaysWhileTheCurrentRowMovesInIt) {
    start(100);
    pressTimes(Qt::Key_Down, 9);
    EXPECT_EQ(shown(), rowsOf(0, 9, 9));
    pressTimes(Qt::Key_Up, 4);
    EXPECT_EQ(shown(), rowsOf(0, 9, 5));
}

TEST_F(DataGridTest, WindowScrollsByWhatIsNeeded) {
    start(100);
    pressTimes(Qt::Key_Down, 12);
    EXPECT_EQ(shown(), rowsOf(3, 12, 12));
    pressTimes(Qt::Key_Up, 10);
    EXPECT_EQ(shown(), rowsOf(2, 11, 2));
}

TEST_F(DataGridTest, AHitOutsideTheViewLandsInItsUpperThird) {
    start(100);
    goTo(50);
    EXPECT_EQ(shown(), rowsOf(48, 57, 50));
    goTo(70);
    EXPECT_EQ(shown(), rowsOf(68, 77, 70));
    goTo(79);
    EXPECT_EQ(shown(), rowsOf(77, 86, 79)) << "also when it is near what was shown";
    goTo(70);
    EXPECT_EQ(shown(), rowsOf(68, 77, 70));
    goTo(75);
    EXPECT_EQ(shown(), rowsOf(68, 77, 75)) << "one inside the view moves nothing";
    table->next();
    table->next();
    EXPECT_EQ(shown(), rowsOf(68, 77, 77));
    table->next();
    EXPECT_EQ(shown(), rowsOf(69, 78, 78)) << "nor is a step a hit";
    goTo(1);
    EXPECT_EQ(shown(), rowsOf(0, 9, 1));
    goTo(98);
    EXPECT_EQ(shown(), rowsOf(90, 99, 98));
}

TEST_F(DataGridTest, ManyMovesOfAProgramAreReadOnce) {
    start(100);
    int calculated = 0;
    table->setOnCalculate([&](dbase::Dataset&) { ++calculated; });
    for (int i = 0; i < 60; ++i) {
        table->next();
    }
    QCoreApplication::processEvents();
    EXPECT_LE(calculated, 60 + 10);
    EXPECT_EQ(grid->cellText(grid->currentRow(), 0), "001600");
}

TEST_F(DataGridTest, PageKeysMoveAPage) {
    start(100);
    press(Qt::Key_PageDown);
    EXPECT_EQ(shown(), rowsOf(9, 18, 9));
    press(Qt::Key_Down);
    press(Qt::Key_PageDown);
    EXPECT_EQ(shown(), rowsOf(18, 27, 19));
    press(Qt::Key_PageUp);
    press(Qt::Key_PageUp);
    EXPECT_EQ(shown(), rowsOf(0, 9, 1));
    press(Qt::Key_PageUp);
    EXPECT_EQ(shown(), rowsOf(0, 9, 0));
    pressTimes(Qt::Key_PageDown, 20);
    EXPECT_EQ(shown(), rowsOf(90, 99, 99));
    EXPECT_TRUE(table->eof());
}

TEST_F(DataGridTest, HomeAndEndGoToTheFirstAndTheLastRow) {
    start(100);
    press(Qt::Key_End);
    EXPECT_EQ(shown(), rowsOf(90, 99, 99));
    press(Qt::Key_Home);
    EXPECT_EQ(shown(), rowsOf(0, 9, 0));
    press(Qt::Key_End, Qt::ControlModifier);
    EXPECT_EQ(code(), codeOf(99));
    press(Qt::Key_Home, Qt::ControlModifier);
    EXPECT_EQ(code(), codeOf(0));
    EXPECT_TRUE(table->bof());
}

TEST_F(DataGridTest, KeysSentToTheGridItselfCountToo) {
    start(20);
    QTest::keyClick(grid, Qt::Key_Down);
    EXPECT_EQ(shown(), rowsOf(0, 9, 1));
}

TEST_F(DataGridTest, UpAtTheFirstAndDownAtTheLastRowMoveNothing) {
    start(20);
    press(Qt::Key_Up);
    EXPECT_EQ(shown(), rowsOf(0, 9, 0));
    press(Qt::Key_End);
    press(Qt::Key_Down);
    EXPECT_EQ(shown(), rowsOf(10, 19, 19));
}

TEST_F(DataGridTest, ClickMakesARowCurrent) {
    start(100);
    goTo(50);
    click(2);
    EXPECT_EQ(shown(), rowsOf(48, 57, 50));
    click(4);
    EXPECT_EQ(shown(), rowsOf(48, 57, 52));
    QTest::mouseClick(grid, Qt::LeftButton, {}, grid->cellRect(9, 1).center());
    EXPECT_EQ(shown(), rowsOf(48, 57, 57));
    QTest::mouseClick(view().viewport(), Qt::RightButton, {},
                      view().visualRect(view().model()->index(0, 0)).center());
    EXPECT_EQ(code(), codeOf(57)) << "only the left button selects";
}

TEST_F(DataGridTest, WheelScrollsTheRowsUnderTheSelection) {
    start(100);
    pressTimes(Qt::Key_Down, 4);
    wheel(-1);
    EXPECT_EQ(shown(), rowsOf(3, 12, 7));
    wheel(-2);
    EXPECT_EQ(shown(), rowsOf(9, 18, 13));
    wheel(5);
    EXPECT_EQ(shown(), rowsOf(0, 9, 3)); // by a page at most
}

TEST_F(DataGridTest, DoubleClickIsReportedWithTheRowCurrent) {
    start(100);
    std::string current;
    QObject::connect(grid, &ambrel::DataGrid::rowDoubleClicked, grid, [&] { current = code(); });
    QTest::mouseDClick(view().viewport(), Qt::LeftButton, {},
                       view().visualRect(view().model()->index(6, 1)).center());
    EXPECT_EQ(current, codeOf(6));
    QTest::mouseDClick(grid, Qt::LeftButton, {}, grid->cellRect(2, 0).center());
    EXPECT_EQ(current, codeOf(2));
}

TEST_F(DataGridTest, DoubleClickBelowTheRowsReportsNothing) {
    start(2);
    QSignalSpy spy(grid, &ambrel::DataGrid::rowDoubleClicked);
    QTest::mouseDClick(view().viewport(), Qt::LeftButton, {}, view().viewport()->rect().center());
    EXPECT_EQ(spy.count(), 0);
}

TEST_F(DataGridTest, TitleClickReportsTheColumnAndMovesNothing) {
    start(100);
    QSignalSpy spy(grid, &ambrel::DataGrid::titleClicked);
    QTest::mouseClick(grid, Qt::LeftButton, {}, grid->titleRect(1).center());
    ASSERT_EQ(spy.count(), 1);
    EXPECT_EQ(spy[0][0].toInt(), 1);
    QHeaderView* const header = view().horizontalHeader();
    QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, {header->sectionViewportPosition(2) + 20, 5});
    ASSERT_EQ(spy.count(), 2);
    EXPECT_EQ(spy[1][0].toInt(), 2);
    EXPECT_EQ(shown(), rowsOf(0, 9, 0));
}

TEST_F(DataGridTest, TabMovesOnToTheNextControl) {
    start(10);
    before->setFocus();
    press(Qt::Key_Tab);
    EXPECT_TRUE(grid->hasFocus());
    press(Qt::Key_Tab);
    EXPECT_TRUE(behind->hasFocus());
    press(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_TRUE(grid->hasFocus());
    press(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_TRUE(before->hasFocus());
    EXPECT_EQ(code(), codeOf(0));
}

TEST_F(DataGridTest, OtherKeysGoOnToTheWindow) {
    struct Listener : QObject {
        bool eventFilter(QObject*, QEvent* event) override {
            if (event->type() == QEvent::KeyPress) {
                keys.push_back(static_cast<QKeyEvent*>(event)->key());
            }
            return false;
        }
        QList<int> keys;
    } listener;
    start(10);
    window.installEventFilter(&listener);
    press(Qt::Key_Return);
    press(Qt::Key_A);
    press(Qt::Key_Escape);
    EXPECT_EQ(listener.keys, (QList<int>{Qt::Key_Return, Qt::Key_A, Qt::Key_Escape}));
    EXPECT_EQ(code(), codeOf(0));
}

// --- Room

TEST_F(DataGridTest, ResizeShowsMoreOrFewerRows) {
    start(100);
    goTo(50);
    pressTimes(Qt::Key_Down, 3);
    ASSERT_EQ(shown(), rowsOf(48, 57, 53));
    giveRoom(14);
    EXPECT_EQ(shown(), rowsOf(48, 61, 53));
    giveRoom(3);
    EXPECT_EQ(shown(), rowsOf(51, 53, 53)) << "the current row stays visible";
    giveRoom(1);
    EXPECT_EQ(shown(), rowsOf(53, 53, 53));
    press(Qt::Key_Down);
    EXPECT_EQ(shown(), rowsOf(54, 54, 54));
    press(Qt::Key_PageUp);
    EXPECT_EQ(shown(), rowsOf(53, 53, 53));
}

TEST_F(DataGridTest, GrowingAtTheEndPullsRowsDown) {
    start(100);
    press(Qt::Key_End);
    giveRoom(20);
    EXPECT_EQ(shown(), rowsOf(80, 99, 99));
}

TEST_F(DataGridTest, LargerFontShowsFewerRows) {
    start(100);
    QFont font = grid->font();
    font.setPointSize(2 * font.pointSize());
    grid->setFont(font);
    QCoreApplication::processEvents();
    EXPECT_LT(grid->visibleRowCount(), 8);
    EXPECT_GE(grid->cellRect(0, 0).height(), QFontMetrics(font).height());
    EXPECT_LE(grid->cellRect(grid->visibleRowCount() - 1, 0).bottom(), grid->height());
}

TEST_F(DataGridTest, SizeHintsAreSane) {
    EXPECT_GT(grid->minimumSizeHint().height(), 60);
    EXPECT_LT(grid->minimumSizeHint().height(), 200);
    EXPECT_GE(grid->sizeHint().width(), 80 + 120 + 200);
    EXPECT_GT(grid->sizeHint().height(), grid->minimumSizeHint().height());
}

// --- Scroll bar

TEST_F(DataGridTest, ScrollBarShowsTheShareOfTheTable) {
    start(2000);
    EXPECT_EQ(bar().value(), 0);
    goTo(1000);
    QCoreApplication::processEvents();
    const double share = static_cast<double>(bar().value()) / (bar().maximum() + bar().pageStep());
    EXPECT_NEAR(share, 0.5, 0.05);
    press(Qt::Key_End);
    EXPECT_EQ(bar().value(), bar().maximum());
    pressTimes(Qt::Key_Up, 2);
    EXPECT_EQ(bar().value(), bar().maximum()) << "the last row is still shown";
    press(Qt::Key_Home);
    EXPECT_EQ(bar().value(), 0);
}

TEST_F(DataGridTest, ScrollBarMovesTheDataset) {
    start(2000);
    bar().setSliderDown(true);
    bar().setSliderPosition((bar().maximum() + bar().pageStep()) / 4);
    bar().setSliderDown(false);
    EXPECT_NEAR(std::stoi(code()), std::stoi(codeOf(500)), 1000);
    EXPECT_EQ(grid->currentRow(), 0) << "what the bar stands on is shown first";
    bar().setSliderPosition(bar().maximum());
    EXPECT_EQ(code(), codeOf(1999));
    bar().triggerAction(QAbstractSlider::SliderSingleStepSub);
    EXPECT_EQ(shown(), rowsOf(1990, 1999, 1998));
    bar().triggerAction(QAbstractSlider::SliderPageStepSub);
    EXPECT_EQ(shown(), rowsOf(1981, 1990, 1989));
    bar().setSliderPosition(0);
    EXPECT_EQ(shown(), rowsOf(0, 9, 0));
    bar().triggerAction(QAbstractSlider::SliderPageStepAdd);
    EXPECT_EQ(shown(), rowsOf(9, 18, 9));
}

TEST_F(DataGridTest, ScrollBarWithoutTag) {
    start(500);
    table->setTag({});
    bar().setSliderPosition(bar().maximum() / 2);
    EXPECT_NEAR(std::stoi(code()), std::stoi(codeOf(250)), 100);
    QCoreApplication::processEvents();
    EXPECT_NEAR(bar().value(), bar().maximum() / 2, bar().maximum() / 50);
}

TEST_F(DataGridTest, ScrollBarOfARangeCoversTheRange) {
    start(2000);
    table->setRange({{"CODE", codeOf(1000)}}, {{"CODE", codeOf(1200)}});
    QCoreApplication::processEvents();
    EXPECT_EQ(bar().value(), 0);
    bar().setSliderPosition(bar().maximum() / 2);
    EXPECT_NEAR(std::stoi(code()), std::stoi(codeOf(1100)), 250);
    press(Qt::Key_End);
    EXPECT_EQ(code(), codeOf(1200));
    EXPECT_EQ(bar().value(), bar().maximum());
}

} // namespace
} // namespace grid_tests
