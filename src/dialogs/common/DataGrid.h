// The grid that all dialogs share: the rows of a dataset around its current record.
#pragma once

#include <QWidget>
#include <memory>
#include <vector>

#include "AmbrelExport.h"
#include "dialogs/common/GridColumn.h"

namespace dbase {
class DataSource;
}

namespace ambrel {

/// Shows as many rows as there is room for and reads no others, so that it costs the same on any table. The
/// dataset's current record is always visible and selected; keys, wheel, scroll bar and clicks move the
/// dataset; painting never does. Nothing is shown while there is no source, no dataset, or the dataset is
/// closed. A fault while reading is told once; the grid then shows nothing before a refresh() that succeeds
/// or until another table is opened.
///
/// With Shift, keys and clicks mark the rows from the one that was current to the one that is; moving in any
/// other way, and whatever else changes the table, drops the mark. Marked rows are there to be copied, with
/// their titles (Ctrl+C, context menu); the current one stays the only one that is chosen.
///
/// Not supported: cells that are edited, several rows chosen, columns that change places.
class AMBREL_EXPORT DataGrid : public QWidget {
    Q_OBJECT
public:
    /// Empty until it has a source and columns.
    explicit DataGrid(QWidget* parent = nullptr);
    ~DataGrid() override;

    /// Follows what the source tells. A source that was destroyed counts as none.
    void setDataSource(dbase::DataSource* source);

    /// Columns from left to right, and their titles.
    void setColumns(std::vector<GridColumn> columns);
    [[nodiscard]] int columnCount() const;
    [[nodiscard]] QString columnTitle(int column) const;
    void setColumnTitle(int column, const QString& title);
    /// As set last, also when it is negative; such a column is not shown.
    [[nodiscard]] int columnWidth(int column) const;
    void setColumnWidth(int column, int width);
    /// Logical pixels that the columns have between them.
    [[nodiscard]] int clientWidth() const;

    /// Reads the dataset's current record again (it may have gone) and shows the rows around it. A pending
    /// row stays pending.
    void refresh();

    /// Rows shown now, and which of them is current (-1 on an empty table). For tests and screen readers.
    [[nodiscard]] int visibleRowCount() const;
    [[nodiscard]] int currentRow() const;
    [[nodiscard]] QString cellText(int row, int column) const;
    /// Place of a shown cell and of a column's title, in the grid's coordinates.
    [[nodiscard]] QRect cellRect(int row, int column) const;
    [[nodiscard]] QRect titleRect(int column) const;

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

Q_SIGNALS:
    /// The title of a column was clicked.
    void titleClicked(int column);
    /// A row was double-clicked; it is current by then.
    void rowDoubleClicked();

protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    bool passOn(QMouseEvent& event);

    struct Parts;
    std::unique_ptr<Parts> parts_;
};

} // namespace ambrel
