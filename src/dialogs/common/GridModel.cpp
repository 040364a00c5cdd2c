// The texts of a data grid.
#include "dialogs/common/GridModel.h"

namespace ambrel {

void GridModel::setColumns(std::vector<GridColumn> columns) {
    beginResetModel();
    columns_ = std::move(columns);
    rows_.clear();
    endResetModel();
}

const GridColumn& GridModel::column(int column) const {
    return columns_.at(static_cast<std::size_t>(column));
}

void GridModel::setWidth(int column, int width) {
    columns_.at(static_cast<std::size_t>(column)).width = width;
}

void GridModel::setTitle(int column, const QString& title) {
    columns_.at(static_cast<std::size_t>(column)).title = title;
    emit headerDataChanged(Qt::Horizontal, column, column);
}

/// Adds and removes rows at the end and changes the others in place: a reset would lose the column widths.
void GridModel::setRows(std::vector<QStringList> rows) {
    const int before = rowCount();
    const int after = static_cast<int>(rows.size());
    if (after < before) {
        beginRemoveRows({}, after, before - 1);
        rows_.resize(rows.size());
        endRemoveRows();
    } else if (after > before) {
        beginInsertRows({}, before, after - 1);
        rows_.resize(rows.size(), QStringList(columnCount()));
        endInsertRows();
    }
    if (rows_ != rows) {
        rows_ = std::move(rows);
        emit dataChanged(index(0, 0), index(after - 1, columnCount() - 1));
        emit headerDataChanged(Qt::Vertical, 0, after - 1);
    }
}

int GridModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int GridModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(columns_.size());
}

QVariant GridModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    switch (role) {
    case Qt::DisplayRole:
    case Qt::AccessibleTextRole:
        return rows_[static_cast<std::size_t>(index.row())].at(index.column());
    case Qt::TextAlignmentRole:
        return QVariant(columns_[static_cast<std::size_t>(index.column())].alignment | Qt::AlignVCenter);
    default:
        return {};
    }
}

/// A row is named by the text of its first column: it has no meaningful number.
QVariant GridModel::headerData(int section, Qt::Orientation orientation, int role) const {
    const auto at = static_cast<std::size_t>(section);
    if (orientation == Qt::Vertical) {
        return role == Qt::DisplayRole && at < rows_.size() ? QVariant(rows_[at].value(0)) : QVariant();
    }
    if (at >= columns_.size()) {
        return {};
    }
    switch (role) {
    case Qt::DisplayRole:
        return columns_[at].title;
    case Qt::TextAlignmentRole:
        return QVariant(columns_[at].alignment | Qt::AlignVCenter);
    default:
        return {};
    }
}

} // namespace ambrel
