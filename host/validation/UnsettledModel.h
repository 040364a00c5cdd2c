// The rows that are not settled, as a table.
#pragma once

#include <QAbstractTableModel>
#include <optional>
#include <vector>

#include "host/validation/ValidationJob.h"

namespace host {

class UnsettledModel : public QAbstractTableModel {
    Q_OBJECT
public:
    enum Column { Row, Verdict, Given, Nearest, columnCountOfModel };

    using QAbstractTableModel::QAbstractTableModel;

    void clear();
    void append(const std::vector<UnsettledRow>& rows);
    /// Shows only rows with a verdict; null shows all.
    void setFilter(std::optional<ambrel::Verdict> verdict);
    [[nodiscard]] const UnsettledRow& row(int index) const {
        return rows_[shown_[static_cast<std::size_t>(index)]];
    }

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    [[nodiscard]] bool isShown(const UnsettledRow& row) const {
        return !filter_ || row.judged.verdict == *filter_;
    }

    std::vector<UnsettledRow> rows_;
    std::vector<std::size_t> shown_; // places in `rows_`
    std::optional<ambrel::Verdict> filter_;
};

/// The title of a verdict in window text.
[[nodiscard]] QString titleOf(ambrel::Verdict verdict);

} // namespace host
