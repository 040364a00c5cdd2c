// The data grid: columns, copying, screen readers, appearance.
#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QHelpEvent>
#include <QToolTip>

#include "GridFixture.h"

namespace grid_tests {
namespace {

class DataGridAccessTest : public GridTest {
protected:
    [[nodiscard]] QAccessibleTableInterface* accessible() const {
        return QAccessible::queryAccessibleInterface(&view())->tableInterface();
    }
};

// --- Columns

TEST_F(DataGridAccessTest, ColumnsAndTitles) {
    start(5);
    EXPECT_EQ(grid->columnCount(), 3);
    EXPECT_EQ(grid->columnTitle(1), "Name");
    grid->setColumnTitle(1, "Otro nombre");
    EXPECT_EQ(grid->columnTitle(1), "Otro nombre");
    EXPECT_EQ(view().model()->headerData(1, Qt::Horizontal).toString(), "Otro nombre");
    EXPECT_EQ(grid->titleRect(1).x() - grid->titleRect(0).x(), 80);
    EXPECT_EQ(grid->titleRect(1).width(), 120);
    EXPECT_EQ(grid->cellRect(2, 1).x(), grid->titleRect(1).x());
    EXPECT_LT(grid->titleRect(1).bottom(), grid->cellRect(0, 1).top());
}

TEST_F(DataGridAccessTest, WidthsStayWhenRowsComeAndGo) {
    start(30);
    grid->setColumnWidth(0, 33);
    grid->setColumnWidth(2, 77);
    table->setFilter("HIDDEN=False");
    ASSERT_EQ(grid->visibleRowCount(), 3);
    table->clearFilter();
    EXPECT_EQ(grid->visibleRowCount(), 10);
    EXPECT_EQ(grid->columnWidth(0), 33);
    EXPECT_EQ(grid->cellRect(0, 0).width(), 33);
    EXPECT_EQ(grid->cellRect(9, 2).width(), 77);
}

TEST_F(DataGridAccessTest, NegativeWidthIsKeptAndHidesTheColumn) {
    start(30);
    grid->setColumnWidth(2, -40);
    EXPECT_EQ(grid->columnWidth(2), -40);
    EXPECT_TRUE(view().isColumnHidden(2));
    grid->setColumnWidth(2, 0);
    EXPECT_EQ(grid->columnWidth(2), 0);
    EXPECT_TRUE(view().isColumnHidden(2));
    grid->setColumnWidth(2, 50);
    EXPECT_FALSE(view().isColumnHidden(2));
    EXPECT_EQ(grid->cellRect(0, 2).width(), 50);
}

TEST_F(DataGridAccessTest, ColumnDraggedByTheUserHasItsNewWidth) {
    start(30);
    view().horizontalHeader()->resizeSection(1, 150);
    EXPECT_EQ(grid->columnWidth(1), 150);
}

TEST_F(DataGridAccessTest, ClientWidthLeavesTheScrollBarOut) {
    start(30);
    EXPECT_EQ(grid->clientWidth(), view().viewport()->width());
    EXPECT_LE(grid->clientWidth(), grid->width() - bar().width());
    const int narrow = grid->clientWidth();
    window.resize(window.width() + 100, window.height());
    EXPECT_EQ(grid->clientWidth(), narrow + 100);
    QCoreApplication::processEvents(); // a small screen may take back some of the width
    grid->setColumnWidth(2, grid->clientWidth() - 80 - 120);
    QCoreApplication::processEvents();
    EXPECT_TRUE(QTest::qWaitFor([&] { return !view().horizontalScrollBar()->isVisible(); }));
    EXPECT_EQ(grid->cellRect(0, 2).right() + 1, grid->cellRect(0, 0).left() + grid->clientWidth());
}

TEST_F(DataGridAccessTest, ClientWidthDoesNotDependOnTheRows) {
    start(2);
    const int few = grid->clientWidth();
    table->close();
    EXPECT_EQ(grid->clientWidth(), few);
}

// --- Titles

TEST_F(DataGridAccessTest, NumbersStandToTheRightUnderTitlesThatDoSo) {
    grid->setColumns({{.field = "CODE", .title = "Code"},
                      {.field = "NAME", .title = "Name", .alignment = Qt::AlignRight}});
    start(3);
    const QAbstractItemModel& model = *view().model();
    const auto ofCell = [&](int column) {
        return model.index(0, column).data(Qt::TextAlignmentRole).value<Qt::Alignment>();
    };
    const auto ofTitle = [&](int column) {
        return model.headerData(column, Qt::Horizontal, Qt::TextAlignmentRole).value<Qt::Alignment>();
    };
    EXPECT_EQ(ofCell(0), Qt::AlignLeft | Qt::AlignVCenter);
    EXPECT_EQ(ofTitle(0), Qt::AlignLeft | Qt::AlignVCenter);
    EXPECT_EQ(ofCell(1), Qt::AlignRight | Qt::AlignVCenter);
    EXPECT_EQ(ofTitle(1), Qt::AlignRight | Qt::AlignVCenter);
}

TEST_F(DataGridAccessTest, TheTitleOfTheOrdersColumnBearsAnArrow) {
    grid->setColumns({{.field = "CODE", .title = "Code", .tags = {"CODE"}},
                      {.field = "NAME", .title = "Name", .tags = {"NAME", "BOTH"}},
                      {.field = "WHOLE", .title = "Whole"}});
    start(30);
    /// The column, or -1 without an arrow.
    const auto arrow = [&] {
        static_cast<void>(grid->currentRow());
        const QHeaderView& header = *view().horizontalHeader();
        if (header.isSortIndicatorShown()) {
            EXPECT_EQ(header.sortIndicatorOrder(), Qt::AscendingOrder);
        }
        return header.isSortIndicatorShown() ? header.sortIndicatorSection() : -1;
    };
    EXPECT_EQ(arrow(), 0);
    for (const auto& [tag, column] : {std::pair("NAME", 1), std::pair("BOTH", 1), std::pair("CODE", 0),
                                      std::pair("", -1), std::pair("BOTH", 1)}) {
        table->setTag(tag);
        EXPECT_EQ(arrow(), column) << tag;
    }
    for (const int column : {2, 0, 1, 1}) {
        QTest::mouseClick(grid, Qt::LeftButton, {}, grid->titleRect(column).center());
        EXPECT_EQ(arrow(), 1) << "a click that changes no order moves no arrow";
    }
    table->close();
    EXPECT_EQ(arrow(), -1);
}

// --- Copying

TEST_F(DataGridAccessTest, ControlCCopiesTheRow) {
    start(30);
    press(Qt::Key_Down);
    press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text(), "001010\tN99998\t<001010 N99998>");
    grid->setColumnWidth(1, -1);
    press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text(), "001010\t<001010 N99998>") << "as it is seen";
}

TEST_F(DataGridAccessTest, ControlCOnAnEmptyTableCopiesNothing) {
    start(0);
    QApplication::clipboard()->setText("before");
    press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text(), "before");
}

// --- Hint

TEST_F(DataGridAccessTest, HintIsShownOverTheRows) {
    grid->setToolTip("Listado");
    start(30);
    const QPoint place = view().viewport()->rect().center();
    QHelpEvent event(QEvent::ToolTip, place, view().viewport()->mapToGlobal(place));
    QCoreApplication::sendEvent(view().viewport(), &event);
    EXPECT_EQ(QToolTip::text(), "Listado");
    QToolTip::hideText();
}

TEST_F(DataGridAccessTest, ACellThatIsCutSaysItsWholeText) {
    grid->setToolTip("Listado");
    start(30);
    grid->setColumnWidth(2, 60);
    const auto hintAt = [&](int row, int column) {
        const QPoint place = view().viewport()->mapFrom(grid, grid->cellRect(row, column).center());
        QHelpEvent event(QEvent::ToolTip, place, view().viewport()->mapToGlobal(place));
        QCoreApplication::sendEvent(view().viewport(), &event);
        return QToolTip::text();
    };
    EXPECT_EQ(hintAt(3, 2), "<001030 N99996>");
    EXPECT_EQ(hintAt(4, 2), "<001040 N99995>");
    EXPECT_EQ(hintAt(3, 0), "Listado");
    grid->setColumnWidth(2, 300);
    EXPECT_EQ(hintAt(3, 2), "Listado");
    QToolTip::hideText();
}

// --- Screen readers

/// Names of header cells. The caller owns the cells, which only the registry can free.
QStringList takeNames(const QList<QAccessibleInterface*>& cells) {
    QStringList names;
    for (QAccessibleInterface* const cell : cells) {
        names.append(cell->text(QAccessible::Name));
        QAccessible::deleteAccessibleInterface(QAccessible::registerAccessibleInterface(cell));
    }
    return names;
}

TEST_F(DataGridAccessTest, ScreenReaderFindsATable) {
    grid->setAccessibleName("Municipios");
    start(30);
    QAccessibleInterface* const of = QAccessible::queryAccessibleInterface(&view());
    EXPECT_EQ(of->role(), QAccessible::Table);
    EXPECT_EQ(of->text(QAccessible::Name), "Municipios");
    ASSERT_NE(accessible(), nullptr);
    EXPECT_EQ(accessible()->rowCount(), 10);
    EXPECT_EQ(accessible()->columnCount(), 3);
    EXPECT_EQ(accessible()->columnDescription(1), "Name");
    EXPECT_EQ(accessible()->rowDescription(4), "001040");
    EXPECT_EQ(accessible()->cellAt(4, 1)->text(QAccessible::Name), "N99995");
    auto* const cell = accessible()->cellAt(4, 1)->tableCellInterface();
    ASSERT_NE(cell, nullptr);
    EXPECT_EQ(takeNames(cell->columnHeaderCells()), QStringList{"Name"});
    EXPECT_EQ(takeNames(cell->rowHeaderCells()), QStringList{"001040"});
}

TEST_F(DataGridAccessTest, ScreenReaderFindsTheSelectedRow) {
    start(30);
    press(Qt::Key_Down);
    EXPECT_EQ(accessible()->selectedRows(), QList<int>{1});
    EXPECT_TRUE(accessible()->isRowSelected(1));
    EXPECT_TRUE(accessible()->cellAt(1, 0)->state().selected);
    EXPECT_TRUE(accessible()->cellAt(1, 0)->state().focused);
    EXPECT_FALSE(accessible()->cellAt(0, 0)->state().selected);
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&view())->focusChild()->text(QAccessible::Name),
              "001010");
}

TEST_F(DataGridAccessTest, ScreenReaderIsNotifiedOfEachMoveAlsoWhenTheRowsScrollUnderTheSelection) {
    // The view notifies them whenever its current cell changes; without a screen there is no other sender.
    start(30);
    pressTimes(Qt::Key_Down, 9);
    QStringList told;
    QObject::connect(view().selectionModel(), &QItemSelectionModel::currentChanged, grid,
                     [&](const QModelIndex& current) {
                         if (current.isValid()) {
                             told.push_back(current.data().toString());
                         }
                     });
    press(Qt::Key_Down);
    press(Qt::Key_Down);
    press(Qt::Key_Up);
    grid->refresh();
    EXPECT_EQ(told, (QStringList{"001100", "001110", "001100"}));
}

// --- Looks

TEST_F(DataGridAccessTest, SelectionHasTheSameColourWithoutFocusAndALineAroundItWithFocus) {
    start(30);
    press(Qt::Key_Down);
    const QRect row = grid->cellRect(1, 0), inside = row.adjusted(2, 2, -2, -2);
    const QImage with = grid->grab(inside).toImage(), lined = grid->grab(row).toImage();
    behind->setFocus();
    EXPECT_EQ(grid->grab(inside).toImage(), with);
    EXPECT_NE(grid->grab(row).toImage(), lined);
    EXPECT_NE(grid->grab(grid->cellRect(3, 0)).toImage().pixelColor(2, 2), with.pixelColor(1, 1));
}

} // namespace
} // namespace grid_tests
