// The data grid: marking rows, and copying them.
#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QMenu>

#include "GridFixture.h"

namespace grid_tests {
namespace {

class DataGridMarksTest : public GridTest {
protected:
    DataGridMarksTest() { QApplication::clipboard()->setText("before"); }

    void clickWithShift(int row) {
        QTest::mouseClick(grid, Qt::LeftButton, Qt::ShiftModifier, grid->cellRect(row, 0).center());
    }
    void mark(Qt::Key key, int times = 1) {
        for (int i = 0; i < times; ++i) {
            press(key, Qt::ShiftModifier);
        }
    }
    static QString copied() { return QApplication::clipboard()->text(); }
    /// Numbers of the rows that Ctrl+C copies, below their titles when there are several.
    QString copy() {
        press(Qt::Key_C, Qt::ControlModifier);
        QStringList lines = copied().split('\n'), codes;
        if (lines.size() > 1) {
            EXPECT_EQ(lines.takeFirst(), "Code\tName\tWhole");
        }
        for (const QString& line : lines) {
            codes.push_back(QString::number((line.section('\t', 0, 0).toInt() - 1000) / 10));
        }
        return codes.join(' ');
    }
    /// The shown rows that look marked.
    [[nodiscard]] QList<int> marked() const {
        static_cast<void>(grid->currentRow());
        QList<int> rows;
        for (const QModelIndex& index : view().selectionModel()->selectedRows()) {
            rows.push_back(index.row());
        }
        std::ranges::sort(rows);
        return rows;
    }
    /// The context menu shown over the grid, or null.
    QMenu* menu() {
        const QPoint place = view().viewport()->rect().center();
        QContextMenuEvent event(QContextMenuEvent::Mouse, place, view().viewport()->mapToGlobal(place));
        QCoreApplication::sendEvent(view().viewport(), &event);
        return qobject_cast<QMenu*>(QApplication::activePopupWidget());
    }
};

TEST_F(DataGridMarksTest, ShiftAndDownMarkRowsThatAreCopiedWithTheirTitles) {
    start(30);
    press(Qt::Key_Down);
    mark(Qt::Key_Down, 2);
    EXPECT_EQ(shown(), rowsOf(0, 9, 3));
    EXPECT_EQ(marked(), (QList<int>{1, 2, 3}));
    EXPECT_EQ(copy(), "1 2 3");
    EXPECT_EQ(copied(), "Code\tName\tWhole\n"
                        "001010\tN99998\t<001010 N99998>\n"
                        "001020\tN99997\t<001020 N99997>\n"
                        "001030\tN99996\t<001030 N99996>");
    EXPECT_EQ(marked(), (QList<int>{1, 2, 3})) << "copying leaves the mark";
}

TEST_F(DataGridMarksTest, MarkShrinksAndTurnsAroundWhereItBegan) {
    start(30);
    pressTimes(Qt::Key_Down, 4);
    mark(Qt::Key_Down, 2);
    mark(Qt::Key_Up);
    EXPECT_EQ(marked(), (QList<int>{4, 5}));
    mark(Qt::Key_Up, 3);
    EXPECT_EQ(marked(), (QList<int>{2, 3, 4}));
    EXPECT_EQ(code(), codeOf(2));
    EXPECT_EQ(copy(), "2 3 4") << "in the order of the table";
    mark(Qt::Key_Down, 2);
    EXPECT_EQ(copy(), "4");
}

TEST_F(DataGridMarksTest, AnyOtherMoveDropsTheMark) {
    start(30);
    const std::vector<std::function<void()>> moves{
        [&] { press(Qt::Key_Up); },
        [&] { press(Qt::Key_PageDown); },
        [&] { press(Qt::Key_Home); },
        [&] { wheel(-1); },
        [&] { click(3); },
        [&] { click(grid->currentRow()); },
        [&] { table->next(); },
        [&] { goTo(20); },
        [&] { table->setTag("NAME"); },
        [&] { table->setTag("CODE"); },
        [&] { table->setFilter("CODE<>'000000'"); },
        [&] { table->close(), table->open(); },
        [&] { bar().triggerAction(QAbstractSlider::SliderSingleStepAdd); }};
    for (std::size_t i = 0; i < moves.size(); ++i) {
        mark(Qt::Key_Down, 2);
        ASSERT_GT(marked().size(), 1) << i;
        moves[i]();
        EXPECT_EQ(marked(), QList<int>{grid->currentRow()}) << i;
        EXPECT_FALSE(copy().contains(' ')) << i;
        table->first();
    }
}

TEST_F(DataGridMarksTest, AStepThatMovesNothingDropsTheMarkAsWell) {
    start(30);
    press(Qt::Key_Down);
    mark(Qt::Key_Up);
    EXPECT_EQ(marked(), (QList<int>{0, 1}));
    press(Qt::Key_Up);
    EXPECT_EQ(marked(), QList<int>{0});
}

TEST_F(DataGridMarksTest, ShiftAndAClickMarkTheRowsBetween) {
    start(100);
    goTo(50);
    ASSERT_EQ(shown(), rowsOf(48, 57, 50));
    clickWithShift(7);
    EXPECT_EQ(marked(), (QList<int>{2, 3, 4, 5, 6, 7}));
    EXPECT_EQ(copy(), "50 51 52 53 54 55");
    clickWithShift(0);
    EXPECT_EQ(copy(), "48 49 50");
    click(4);
    EXPECT_EQ(copy(), "52");
}

TEST_F(DataGridMarksTest, MarkReachesOverMoreRowsThanAreShown) {
    start(200);
    goTo(60);
    for (int i = 0; i < 5; ++i) {
        mark(Qt::Key_PageDown);
    }
    EXPECT_EQ(code(), codeOf(105));
    EXPECT_EQ(marked().size(), grid->currentRow() + 1);
    EXPECT_EQ(copy().split(' ').size(), 46);
    EXPECT_TRUE(copy().startsWith("60 61 "));
    EXPECT_TRUE(copy().endsWith(" 105"));
    for (int i = 0; i < 9; ++i) {
        mark(Qt::Key_PageUp);
    }
    EXPECT_EQ(code(), codeOf(24));
    EXPECT_TRUE(copy().startsWith("24 25 "));
    EXPECT_TRUE(copy().endsWith(" 60"));
}

TEST_F(DataGridMarksTest, MarkReachesToTheEndsOfTheTable) {
    start(200);
    goTo(60);
    mark(Qt::Key_End);
    EXPECT_EQ(marked().size(), 10);
    EXPECT_EQ(copy().split(' ').size(), 140);
    mark(Qt::Key_Home);
    EXPECT_EQ(marked().size(), 10);
    EXPECT_EQ(copy().split(' ').size(), 61);
    EXPECT_TRUE(copy().endsWith(" 60"));
}

TEST_F(DataGridMarksTest, MarkPassesOverWhatTheFilterHides) {
    start(200);
    table->setFilter("HIDDEN=False");
    mark(Qt::Key_End);
    EXPECT_EQ(copy(), "0 10 20 30 40 50 60 70 80 90 100 110 120 130 140 150 160 170 180 190");
}

TEST_F(DataGridMarksTest, RowWhereMarkingBeganThatSomebodyTookAwayEndsTheMark) {
    start(200);
    goTo(60);
    mark(Qt::Key_PageDown);
    mark(Qt::Key_PageDown);
    eraseElsewhere(60);
    press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(copied(), "before") << "not other rows than were marked";
    EXPECT_EQ(marked(), QList<int>{grid->currentRow()});
}

TEST_F(DataGridMarksTest, RowsThatSomebodyAddsInTheMarkAreCopied) {
    start(200);
    goTo(60);
    mark(Qt::Key_PageDown);
    mark(Qt::Key_PageDown);
    insertElsewhere("001655");
    press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(copied().split('\n').size(), 1 + 20);
    EXPECT_TRUE(copied().contains("\n001655\t"));
}

TEST_F(DataGridMarksTest, PendingNewRowBeginsNoMark) {
    start(30);
    table->append();
    mark(Qt::Key_Down);
    EXPECT_EQ(marked().size(), 1);
}

TEST_F(DataGridMarksTest, TheCurrentRowStandsOutAmongTheMarked) {
    start(30);
    mark(Qt::Key_Down, 2);
    behind->setFocus(); // removes the line around the current row, too
    const auto colourOf = [&](int row) {
        return grid->grab(grid->cellRect(row, 2)).toImage().pixelColor(grid->columnWidth(2) - 3, 3);
    };
    EXPECT_EQ(colourOf(0), colourOf(1));
    EXPECT_NE(colourOf(1), colourOf(2));
    EXPECT_NE(colourOf(1), colourOf(3));
}

TEST_F(DataGridMarksTest, ScreenReaderFindsTheMarkedRows) {
    start(30);
    mark(Qt::Key_Down, 2);
    auto* const rows = QAccessible::queryAccessibleInterface(&view())->tableInterface();
    EXPECT_EQ(rows->selectedRowCount(), 3);
    EXPECT_TRUE(rows->isRowSelected(0));
    EXPECT_TRUE(rows->cellAt(2, 0)->state().focused);
}

TEST_F(DataGridMarksTest, ContextMenuCopiesTheRowWithOrWithoutTitles) {
    start(30);
    press(Qt::Key_Down);
    ASSERT_NE(menu(), nullptr);
    QList<QAction*> actions = menu()->actions();
    ASSERT_EQ(actions.size(), 2);
    EXPECT_EQ(actions[0]->text(), "&Copiar la fila");
    EXPECT_EQ(actions[0]->shortcut(), QKeySequence(QKeySequence::Copy));
    EXPECT_EQ(actions[1]->text(), "Copiar la fila con los &títulos");
    actions[0]->trigger();
    EXPECT_EQ(copied(), "001010\tN99998\t<001010 N99998>");
    actions[1]->trigger();
    EXPECT_EQ(copied(), "Code\tName\tWhole\n001010\tN99998\t<001010 N99998>");
    QApplication::activePopupWidget()->close();
    EXPECT_EQ(code(), codeOf(1)) << "only the left button chooses";
}

TEST_F(DataGridMarksTest, ContextMenuCopiesTheMarkedRowsWithTheirTitles) {
    start(30);
    mark(Qt::Key_Down);
    QMenu* const open = menu();
    ASSERT_NE(open, nullptr);
    ASSERT_EQ(open->actions().size(), 1);
    EXPECT_EQ(open->actions()[0]->text(), "&Copiar las filas con sus títulos");
    QTest::keyClick(open, Qt::Key_C);
    EXPECT_EQ(copied(), "Code\tName\tWhole\n001000\tN99999\t<001000 N99999>\n"
                        "001010\tN99998\t<001010 N99998>");
}

TEST_F(DataGridMarksTest, AnEmptyTableHasNoContextMenu) {
    start(0);
    EXPECT_EQ(menu(), nullptr);
    mark(Qt::Key_Down);
    press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(copied(), "before");
}

TEST_F(DataGridMarksTest, AControlCharacterInATableBreaksNoLine) {
    start(3);
    table->edit();
    table->field("NAME").setText("a\tb\nc");
    table->post();
    press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(copied().section('\t', 1, 1), "a b c");
}

} // namespace
} // namespace grid_tests
