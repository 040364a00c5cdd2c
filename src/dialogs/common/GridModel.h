// The texts that a data grid shows, as Qt's views and screen readers want them.
#pragma once

#include <QAbstractTableModel>
#include <QStringList>
#include <vector>

#include "dialogs/common/GridColumn.h"

namespace ambrel {

/// Holds the rows of the window and knows no others.
class GridModel : public QAbstractTableModel {
    Q_OBJECT
public:
    using QAbstractTableModel::QAbstractTableModel;

    void setColumns(std::vector<GridColumn> columns);
    [[nodiscard]] const std::vector<GridColumn>& columns() const { return columns_; }
    [[nodiscard]] const GridColumn& column(int column) const;
    /// Kept here only; the view shows it.
    void setWidth(int column, int width);
    void setTitle(int column, const QString& title);
    /// One text a column in each row.
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
