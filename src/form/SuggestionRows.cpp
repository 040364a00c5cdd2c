// Texts and columns of a list of suggestions.
#include "form/SuggestionRows.h"

#include <QPainter>
#include <QStringList>
#include <QStyle>
#include <QTextLayout>
#include <algorithm>
#include <cmath>
#include <numeric>
#include <utility>

namespace ambrel {
namespace {

constexpr int rowMargin = 3; // above and below the letters, pixels

/// One line with the marked letters in bold.
class MarkedLine {
public:
    MarkedLine(const SuggestionRow& row, const QFont& font) : layout_(row.name, font) {
        QList<QTextLayout::FormatRange> formats;
        for (const auto& [first, length] : row.marks) {
            QTextCharFormat bold;
            bold.setFontWeight(QFont::Bold);
            formats.append({first, length, bold});
        }
        layout_.setFormats(formats);
        layout_.beginLayout();
        layout_.createLine().setPosition({0, 0});
        layout_.endLayout();
    }
    [[nodiscard]] int width() const { return static_cast<int>(std::ceil(layout_.maximumWidth())); }
    void draw(QPainter& painter, const QRect& place) const {
        const qreal above = (place.height() - layout_.boundingRect().height()) / 2;
        layout_.draw(&painter, QPointF(place.left(), place.top() + above));
    }

private:
    QTextLayout layout_;
};

int widthOf(const QString& text, const QFont& font) {
    return text.isEmpty() ? 0 : static_cast<int>(std::ceil(QFontMetricsF(font).horizontalAdvance(text))) + 1;
}

void drawCut(QPainter& painter, const QRect& place, const QString& text) {
    painter.drawText(place, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                     painter.fontMetrics().elidedText(text, Qt::ElideRight, place.width()));
}

} // namespace

void SuggestionModel::setRows(std::vector<SuggestionRow> rows) {
    beginResetModel();
    rows_ = std::move(rows);
    endResetModel();
}

int SuggestionModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

QVariant SuggestionModel::data(const QModelIndex& index, int role) const {
    if (role != Qt::DisplayRole && role != Qt::AccessibleTextRole) {
        return {};
    }
    const SuggestionRow& shown = row(index.row());
    QStringList parts{shown.type.isEmpty() ? shown.name : shown.type + QLatin1Char(' ') + shown.name,
                      shown.place, shown.postalCodes};
    parts.removeAll(QString());
    return parts.join(QStringLiteral(", "));
}

void SuggestionDelegate::measure(const QFont& font) {
    const QFontMetrics metrics(font);
    widths_.fill(0);
    for (int index = 0; index < model_.rowCount(); ++index) {
        const SuggestionRow& row = model_.row(index);
        const std::array wanted{widthOf(row.type, font), MarkedLine(row, font).width(),
                                widthOf(row.place, font), widthOf(row.postalCodes, font)};
        std::ranges::transform(widths_, wanted, widths_.begin(), [](int a, int b) { return std::max(a, b); });
    }
    gap_ = metrics.averageCharWidth();
    height_ = metrics.height() + 2 * rowMargin;
}

QSize SuggestionDelegate::sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const {
    const auto shown = std::ranges::count_if(widths_, [](int width) { return width != 0; });
    // A gap before and after each column; a wider one separates what stands right of the name.
    return {std::accumulate(widths_.begin(), widths_.end(), static_cast<int>(2 * shown) * gap_), height_};
}

/// In a row of another width than the wanted one, what stands right of the name stays at the right edge;
/// place and name, in this order, lose what is missing.
std::array<QRect, SuggestionDelegate::columnCount> SuggestionDelegate::columnsIn(const QRect& row) const {
    std::array<int, columnCount> widths = widths_;
    int missing = sizeHint({}, {}).width() - row.width();
    for (const Column column : {Place, Name}) {
        const int lost = std::clamp(missing, 0, widths[column]);
        widths[column] -= lost;
        missing -= lost;
    }
    widths[Name] += std::max(0, -missing);
    std::array<QRect, columnCount> columns;
    int left = row.left();
    for (int column = 0; column < columnCount; ++column) {
        if (widths_[column] != 0) {
            columns[column] = QRect(left + gap_, row.top(), widths[column], row.height());
            left += widths[column] + 2 * gap_;
        }
    }
    return columns;
}

void SuggestionDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                               const QModelIndex& index) const {
    QStyleOptionViewItem item = option;
    initStyleOption(&item, index);
    item.text.clear();
    item.state |= QStyle::State_Active; // the window of the box is the active one
    item.palette.setCurrentColorGroup(QPalette::Active);
    item.widget->style()->drawControl(QStyle::CE_ItemViewItem, &item, painter, item.widget);

    const bool isCurrent = item.state.testFlag(QStyle::State_Selected);
    const SuggestionRow& row = model_.row(index.row());
    const auto columns = columnsIn(option.rect);
    painter->save();
    painter->setFont(item.font);
    painter->setPen(item.palette.color(isCurrent ? QPalette::HighlightedText : QPalette::Text));
    const MarkedLine name(row, item.font);
    if (name.width() <= columns[Name].width()) {
        name.draw(*painter, columns[Name]);
    } else {
        drawCut(*painter, columns[Name], row.name);
    }
    drawCut(*painter, columns[Type], row.type);
    drawCut(*painter, columns[Place], row.place);
    drawCut(*painter, columns[Codes], row.postalCodes);
    painter->restore();
}

} // namespace ambrel
