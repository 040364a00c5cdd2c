// The grid shared by all dialogs: the rows of a dataset around its current record.
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

/// Shows as many rows as fit and reads no others, so that it costs the same on any table. The dataset's
/// current record is always visible and selected; keys, wheel, scroll bar and clicks move the dataset;
/// painting never does. Shows nothing without a source or dataset, or while the dataset is closed. A failure
/// while reading is reported once; the grid then shows nothing until a refresh() succeeds or another table is
/// opened.
///
/// With Shift, keys and clicks mark the rows from the previously current one to the new one; any other move
/// or change of the table drops the mark. Marked rows can be copied with their titles (Ctrl+C, context menu);
/// the current one remains the only one selected.
///
/// Not supported: editing cells, selecting several rows, moving columns.
class AMBREL_EXPORT DataGrid : public QWidget {
    Q_OBJECT
public:
    /// Empty until it has a source and columns.
    explicit DataGrid(QWidget* parent = nullptr);
    ~DataGrid() override;

    /// Follows the source's notifications. A destroyed source counts as none.
    void setDataSource(dbase::DataSource* source);

    /// Sets the columns, from left to right, and their titles.
    void setColumns(std::vector<GridColumn> columns);
    [[nodiscard]] int columnCount() const;
    [[nodiscard]] QString columnTitle(int column) const;
    void setColumnTitle(int column, const QString& title);
    /// Width as last set, even if negative; such a column is not shown.
    [[nodiscard]] int columnWidth(int column) const;
    void setColumnWidth(int column, int width);
    /// Logical pixels available to all columns together.
    [[nodiscard]] int clientWidth() const;

    /// Reads the dataset's current record again (it may be gone) and shows the rows around it. A pending row
    /// stays pending.
    void refresh();

    /// Rows shown now, and the index of the current one (-1 in an empty table). For tests and screen readers.
    [[nodiscard]] int visibleRowCount() const;
    [[nodiscard]] int currentRow() const;
    [[nodiscard]] QString cellText(int row, int column) const;
    /// Position of a shown cell and of a column's title, in the grid's coordinates.
    [[nodiscard]] QRect cellRect(int row, int column) const;
    [[nodiscard]] QRect titleRect(int column) const;

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

Q_SIGNALS:
    /// The title of a column was clicked.
    void titleClicked(int column);
    /// A row was double-clicked; by then it is current.
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
