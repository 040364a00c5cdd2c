// The rows of a list of suggestions, as a view shows them.
#pragma once

#include <QAbstractListModel>
#include <QStyledItemDelegate>
#include <array>
#include <vector>

#include "form/SuggestionList.h"

namespace ambrel {

class SuggestionModel : public QAbstractListModel {
    Q_OBJECT
public:
    using QAbstractListModel::QAbstractListModel;

    void setRows(std::vector<SuggestionRow> rows);
    [[nodiscard]] const SuggestionRow& row(int index) const { return rows_[static_cast<std::size_t>(index)]; }

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    /// The whole row as one text, for display and for screen readers.
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;

private:
    std::vector<SuggestionRow> rows_;
};

/// Draws rows in columns: type, name with its marked letters, place, postal codes.
class SuggestionDelegate : public QStyledItemDelegate {
    Q_OBJECT
public:
    SuggestionDelegate(const SuggestionModel& model, QObject* parent)
        : QStyledItemDelegate(parent), model_(model) {}

    /// Measures the columns of the model's rows; call when rows or font have changed.
    void measure(const QFont& font);

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

private:
    enum Column { Type, Name, Place, Codes, columnCount };
    [[nodiscard]] std::array<QRect, columnCount> columnsIn(const QRect& row) const;

    const SuggestionModel& model_;
    std::array<int, columnCount> widths_{}; // 0: no row has the column
    int gap_ = 0, height_ = 0;
};

} // namespace ambrel
