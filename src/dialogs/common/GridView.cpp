// Appearance of a data grid, and its reaction to clicks.
#include "dialogs/common/GridView.h"

#include <QEvent>
#include <QHeaderView>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyledItemDelegate>
#include <QToolTip>
#include <algorithm>

namespace ambrel {
namespace {

constexpr int rowMargin = 3;        // logical pixels above and below a text
constexpr float markedShare = 0.3F; // share of the selection's colour

QColor between(const QColor& one, const QColor& other, float share) {
    const auto mix = [share](float from, float to) { return from + (to - from) * share; };
    return QColor::fromRgbF(mix(one.redF(), other.redF()), mix(one.greenF(), other.greenF()),
                            mix(one.blueF(), other.blueF()));
}

/// The current row looks the same wherever the focus is, and none of its cells stands out. Other marked rows
/// are paler: the current one is the list's answer.
class RowDelegate : public QStyledItemDelegate {
public:
    explicit RowDelegate(QAbstractItemView* view) : QStyledItemDelegate(view), view_(*view) {}

    /// Shows the whole text of a cell that is cut; for others the grid's hint applies.
    bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                   const QModelIndex& index) override {
        const QRect seen = option.rect & view->viewport()->rect();
        if (!index.isValid() || sizeHint(option, index).width() <= seen.width()) {
            return false;
        }
        QToolTip::showText(event->globalPos(), index.data().toString(), view->viewport(), seen);
        return true;
    }

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
        QStyledItemDelegate::initStyleOption(option, index);
        option->state &= ~QStyle::State_HasFocus;
        option->state &= ~QStyle::State_MouseOver;
        option->state |= QStyle::State_Active;
        if (index.row() == view_.currentIndex().row()) {
            return;
        }
        QPalette& colours = option->palette;
        colours.setColor(QPalette::Highlight, between(colours.color(QPalette::Base),
                                                      colours.color(QPalette::Highlight), markedShare));
        colours.setColor(QPalette::HighlightedText, colours.color(QPalette::Text));
    }

private:
    const QAbstractItemView& view_;
};

} // namespace

GridView::GridView(QWidget* parent) : QTableView(parent) {
    setFrameShape(NoFrame);
    setFocusPolicy(Qt::TabFocus); // a click on a row takes the focus, one on a title does not
    // Shift+Tab would mistake the viewport, which comes after the next control in focus order, for the grid.
    viewport()->setFocusProxy(nullptr);
    setItemDelegate(new RowDelegate(this));
    setSelectionBehavior(SelectRows);
    setSelectionMode(ContiguousSelection);
    setEditTriggers(NoEditTriggers);
    setTabKeyNavigation(false);
    setAlternatingRowColors(true);
    setShowGrid(false);
    setWordWrap(false);
    setAutoScroll(false);
    setCornerButtonEnabled(false);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollMode(ScrollPerPixel);
    horizontalHeader()->setHighlightSections(false);
    horizontalHeader()->setSectionsClickable(true);
    horizontalHeader()->setMinimumSectionSize(1);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    fitRows();
}

void GridView::fitRows() {
    const int height = fontMetrics().height() + 2 * rowMargin;
    verticalHeader()->setMinimumSectionSize(height);
    verticalHeader()->setDefaultSectionSize(height);
}

int GridView::room() const {
    return std::max(1, viewport()->height() / verticalHeader()->defaultSectionSize());
}

void GridView::showCurrent(int row, bool isOther) {
    const QModelIndex wanted = model()->index(row, 0);
    if (!wanted.isValid()) {
        selectionModel()->clear();
        return;
    }
    if (isOther && wanted == currentIndex()) {
        selectionModel()->clearCurrentIndex(); // otherwise the view would take it for the same cell
    }
    selectionModel()->setCurrentIndex(wanted,
                                      QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
}

void GridView::showMarked(int first, int count) {
    const QItemSelection rows(model()->index(first, 0),
                              model()->index(first + count - 1, model()->columnCount() - 1));
    selectionModel()->select(rows, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
}

void GridView::showOrder(int column) {
    horizontalHeader()->setSortIndicatorShown(column >= 0);
    horizontalHeader()->setSortIndicator(column, Qt::AscendingOrder);
}

void GridView::showWidth(int column, int width) {
    setColumnHidden(column, width <= 0);
    if (width > 0) {
        setColumnWidth(column, width);
    }
}

int GridView::heightOf(int rows) const {
    return horizontalHeader()->sizeHint().height() + rows * verticalHeader()->defaultSectionSize();
}

void GridView::keyPressEvent(QKeyEvent* event) { event->ignore(); }

void GridView::mousePressEvent(QMouseEvent* event) {
    setFocus(Qt::MouseFocusReason);
    const int row = rowAt(event->position().toPoint().y());
    if (event->button() == Qt::LeftButton && row >= 0) {
        emit rowPressed(row, event->modifiers());
    }
}

void GridView::mouseMoveEvent(QMouseEvent* event) { event->accept(); }

void GridView::mouseReleaseEvent(QMouseEvent* event) { event->accept(); }

void GridView::mouseDoubleClickEvent(QMouseEvent* event) {
    const int row = rowAt(event->position().toPoint().y());
    if (event->button() == Qt::LeftButton && row >= 0) {
        emit rowDoubleClicked(row);
    }
}

void GridView::paintEvent(QPaintEvent* event) {
    QTableView::paintEvent(event);
    if (hasFocus() && currentIndex().isValid()) {
        const QRect row(0, rowViewportPosition(currentIndex().row()), viewport()->width(),
                        rowHeight(currentIndex().row()));
        QPainter painter(viewport());
        painter.setPen(palette().color(QPalette::Active, QPalette::HighlightedText)); // legible on the row
        // Within the row: at its edge, the line would look like a part of the next one.
        painter.drawRect(row.adjusted(1, 1, -2, -2));
    }
}

void GridView::resizeEvent(QResizeEvent* event) {
    QTableView::resizeEvent(event);
    emit roomChanged();
}

void GridView::changeEvent(QEvent* event) {
    QTableView::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        fitRows();
        emit roomChanged();
    }
}

} // namespace ambrel
