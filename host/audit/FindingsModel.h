// The findings of an audit as a table.
#pragma once

#include <QAbstractTableModel>
#include <cstdint>
#include <optional>
#include <vector>

#include "directory/audit/Finding.h"

namespace host {

class FindingsModel : public QAbstractTableModel {
    Q_OBJECT
public:
    enum Column { Severity, Row, Text, Proposal, columnCountOfModel };

    using QAbstractTableModel::QAbstractTableModel;

    void clear();
    void append(const std::vector<ambrel::directory::Finding>& findings);
    /// Shows only findings of a class; null shows all.
    void setFilter(std::optional<ambrel::directory::FindingClass> kind);
    [[nodiscard]] const ambrel::directory::Finding& finding(int row) const {
        return findings_[shown_[static_cast<std::size_t>(row)]];
    }

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    [[nodiscard]] bool isShown(const ambrel::directory::Finding& finding) const {
        return !filter_ || finding.kind == *filter_;
    }

    std::vector<ambrel::directory::Finding> findings_;
    std::vector<std::uint32_t> shown_; // places in `findings_`
    std::optional<ambrel::directory::FindingClass> filter_;
};

/// A text in UTF-8 for the window.
[[nodiscard]] QString windowText(std::string_view utf8);

} // namespace host
