// The texts that a data grid shows, in the form required by Qt's views and screen readers.
#pragma once

#include <QAbstractTableModel>
#include <QStringList>
#include <vector>

#include "dialogs/common/GridColumn.h"

namespace ambrel {

/// Holds only the rows that the grid shows.
class GridModel : public QAbstractTableModel {
    Q_OBJECT
public:
    using QAbstractTableModel::QAbstractTableModel;

    void setColumns(std::vector<GridColumn> columns);
    [[nodiscard]] const std::vector<GridColumn>& columns() const { return columns_; }
    [[nodiscard]] const GridColumn& column(int column) const;
    /// Stored only; the view applies it.
    void setWidth(int column, int width);
    void setTitle(int column, const QString& title);
    /// Each row has one text per column.
    void setRows(std::vector<QStringList> rows);

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    std::vector<GridColumn> columns_;
    std::vector<QStringList> rows_;
};

} // namespace ambrel
