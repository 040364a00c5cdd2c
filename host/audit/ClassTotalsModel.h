// The totals of an audit: a row for all findings, and one for each class that has any.
#pragma once

#include <QAbstractTableModel>
#include <optional>
#include <vector>

#include "host/audit/AuditJob.h"

namespace host {

class ClassTotalsModel : public QAbstractTableModel {
    Q_OBJECT
public:
    enum Column { Class, Grave, Warning, Note, Advice, columnCountOfModel };

    using QAbstractTableModel::QAbstractTableModel;

    void clear();
    /// Adds rows of classes that are new; the others keep theirs.
    void setCounts(const ClassCounts& counts);
    /// The class of a row; null for the row of all.
    [[nodiscard]] std::optional<ambrel::directory::FindingClass> kind(int row) const;
    [[nodiscard]] int rowOf(std::optional<ambrel::directory::FindingClass> kind) const;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    [[nodiscard]] std::uint64_t count(int row, std::size_t severity) const;

    ClassCounts counts_{};
    std::vector<ambrel::directory::FindingClass> classes_; // that have findings, in their usual order
};

} // namespace host
