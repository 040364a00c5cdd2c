// A data grid on a table of numbered rows.
#include "GridFixture.h"

#include <QApplication>
#include <QHeaderView>
#include <QWheelEvent>
#include <stdexcept>

namespace grid_tests {

GridTest::GridTest() {
    table.emplace("DB", "ROWS", "CODE");
    dbase::Field& whole = table->addCalculated("WHOLE", 30);
    table->setOnCalculate([&whole](dbase::Dataset& rows) {
        whole.setText("<" + rows.field("CODE").text() + " " + rows.field("NAME").text() + ">");
    });
    source.emplace(&*table);
    auto* layout = new QVBoxLayout(&window);
    layout->addWidget(before);
    layout->addWidget(grid);
    layout->addWidget(behind);
    QWidget::setTabOrder(before, grid);
    QWidget::setTabOrder(grid, behind);
    grid->setColumns({{"CODE", "Code", 80}, {"NAME", "Name", 120}, {"WHOLE", "Whole", 200}});
    grid->setDataSource(&*source);
}

std::string GridTest::codeOf(int row) {
    const std::string digits = std::to_string(1000 + 10 * row);
    return std::string(6 - digits.size(), '0') + digits;
}

void GridTest::makeTable(int rows) {
    std::vector<ambrel::test::Row> values;
    for (int i = 0; i < rows; ++i) {
        values.push_back({codeOf(i), "N" + std::to_string(99999 - i), i % 10 == 0 ? "F" : "T"});
    }
    createTable(ambrel::test::defineTable("ROWS", {"CODE C6", "NAME C20", "HIDDEN L"},
                                          {"CODE", "NAME", "BOTH=NAME+CODE"}),
                values);
}

void GridTest::start(int rows) {
    makeTable(rows);
    table->open();
    ambrel::test::showActive(window);
    giveRoom(roomWanted);
    grid->setFocus();
}

void GridTest::giveRoom(int rows) {
    const int spare = grid->height() - view().viewport()->height();
    grid->setFixedHeight(spare + rows * view().verticalHeader()->defaultSectionSize() + 2);
    QCoreApplication::processEvents();
}

std::string GridTest::shown() const {
    std::string text;
    for (int row = 0; row < grid->visibleRowCount(); ++row) {
        const std::string code =
            std::to_string(std::stoi("1" + grid->cellText(row, 0).toStdString()) - 1001000);
        text += (row == 0 ? "" : " ") + (row == grid->currentRow() ? "[" + code + "]" : code);
    }
    return text;
}

std::string GridTest::rowsOf(int first, int last, int current) {
    std::string text;
    for (int row = first; row <= last; ++row) {
        const std::string code = std::to_string(10 * row);
        text += (row == first ? "" : " ") + (row == current ? "[" + code + "]" : code);
    }
    return text;
}

void GridTest::press(Qt::Key key, Qt::KeyboardModifiers modifiers) {
    ASSERT_NE(QApplication::focusWidget(), nullptr);
    QTest::keyClick(QApplication::focusWidget(), key, modifiers);
}

void GridTest::pressTimes(Qt::Key key, int times) {
    for (int i = 0; i < times; ++i) {
        press(key);
    }
}

void GridTest::click(int row) {
    QTest::mouseClick(view().viewport(), Qt::LeftButton, {},
                      view().viewport()->mapFrom(grid, grid->cellRect(row, 0).center()));
}

void GridTest::wheel(int notches) {
    const QPoint middle = view().viewport()->rect().center();
    QWheelEvent event(middle, view().viewport()->mapToGlobal(middle), {}, {0, 120 * notches}, Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(view().viewport(), &event);
}

QScrollBar& GridTest::bar() const {
    for (QScrollBar* candidate : grid->findChildren<QScrollBar*>()) {
        if (candidate->orientation() == Qt::Vertical && candidate->isVisible()) {
            return *candidate;
        }
    }
    throw std::logic_error("no scroll bar");
}

void GridTest::eraseElsewhere(int row) {
    dbase::Dataset other("DB", "ROWS", "CODE");
    other.open();
    ASSERT_TRUE(other.seek({{"CODE", codeOf(row)}}, dbase::SeekMode::Exact));
    other.erase();
}

void GridTest::insertElsewhere(const std::string& newCode) {
    dbase::Dataset other("DB", "ROWS", "CODE");
    other.open();
    other.append();
    other.field("CODE").setText(newCode);
    other.post();
}

} // namespace grid_tests
