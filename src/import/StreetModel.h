// The rows of the import's list of streets.
#pragma once

#include <QAbstractTableModel>
#include <vector>

#include "import/ImportedStreet.h"

namespace ambrel {

/// Has at least one row: an empty list is one empty street. Columns are type and name and, with ranges,
/// postal code and the four numbers; 0 is shown as an empty cell.
class StreetModel : public QAbstractTableModel {
    Q_OBJECT
public:
    explicit StreetModel(QObject* parent);

    void showRanges(bool show);
    void clear();
    /// Adds streets at the end, in one change. As long as the first row has no name, a street replaces the
    /// last row instead.
    void append(std::vector<ImportedStreet> streets);
    void move(int row, int to);
    [[nodiscard]] const std::vector<ImportedStreet>& streets() const { return streets_; }

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    std::vector<ImportedStreet> streets_;
    bool hasRanges_ = false;
};

} // namespace ambrel
