// A window with a data grid on a table of numbered rows, for the grid's tests.
#pragma once

#include <QLineEdit>
#include <QScrollBar>
#include <QTableView>
#include <QTest>
#include <QVBoxLayout>
#include <QWidget>
#include <optional>
#include <string>

#include "dbase/dataset/data_source.h"
#include "dialogs/common/DataGrid.h"
#include "support/ScriptedMessages.h"
#include "support/ShownWindow.h"
#include "support/TableTest.h"

namespace grid_tests {

/// Rows 0, 1, 2… have the codes "001000", "001010", "001020"…; their names run in the opposite order. HIDDEN
/// is true in all but every tenth row.
class GridTest : public ambrel::test::TableTest {
protected:
    static constexpr int roomWanted = 10;

    GridTest();

    static std::string codeOf(int row);
    void makeTable(int rows);
    /// Creates the table, opens it and shows the window.
    void start(int rows);
    /// Makes the grid high enough for this many rows.
    void giveRoom(int rows);

    [[nodiscard]] std::string code() { return table->field("CODE").text(); }
    /// First column of the shown rows, the current one in brackets; only the digits that differ.
    [[nodiscard]] std::string shown() const;
    /// The same for rows `first` to `last` of the fresh table.
    static std::string rowsOf(int first, int last, int current);
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    void pressTimes(Qt::Key key, int times);
    void click(int row);
    void wheel(int notches);
    void goTo(int row) { ASSERT_TRUE(table->seek({{"CODE", codeOf(row)}}, dbase::SeekMode::Exact)); }
    [[nodiscard]] QTableView& view() const { return *grid->findChild<QTableView*>(); }
    [[nodiscard]] QScrollBar& bar() const;
    /// Removes a row through another cursor.
    void eraseElsewhere(int row);
    void insertElsewhere(const std::string& code);

    std::optional<dbase::Dataset> table;
    std::optional<dbase::DataSource> source;
    QWidget window;
    ambrel::DataGrid* grid = new ambrel::DataGrid(&window);
    QLineEdit* before = new QLineEdit(&window);
    QLineEdit* behind = new QLineEdit(&window);
    ambrel::test::ScriptedMessages messages;
};

} // namespace grid_tests
