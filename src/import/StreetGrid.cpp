// The import's list of streets.
#include "import/StreetGrid.h"

#include <QFontMetrics>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QScrollBar>
#include <algorithm>
#include <array>
#include <utility>

#include "import/StreetModel.h"

namespace ambrel {
namespace {

constexpr int nameColumn = 1;
constexpr std::array leastWidths{60, 100, 70, 55, 55, 55, 55}; // logical pixels
constexpr int nameSlack = 8;                                   // left free by the columns at the right
constexpr int titleMargins = 16;
constexpr int leastRowHeight = 20;
constexpr int rowMargins = 6;
constexpr int leastRows = 2; // on a small screen; elsewhere the window has room for more

} // namespace

StreetGrid::StreetGrid(QWidget* parent) : QTableView(parent), model_(new StreetModel(this)) {
    setModel(model_);
    setFocusPolicy(Qt::ClickFocus);
    setSelectionBehavior(SelectRows);
    setSelectionMode(SingleSelection);
    setEditTriggers(NoEditTriggers);
    setTabKeyNavigation(false);
    setAlternatingRowColors(true);
    setShowGrid(false);
    setWordWrap(false);
    setCornerButtonEnabled(false);
    setVerticalScrollMode(ScrollPerItem);
    horizontalHeader()->setHighlightSections(false);
    horizontalHeader()->setSectionsClickable(false);
    horizontalHeader()->setMinimumSectionSize(1);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    const int height = std::max(leastRowHeight, fontMetrics().height() + rowMargins);
    verticalHeader()->setMinimumSectionSize(height);
    verticalHeader()->setDefaultSectionSize(height);
    setWidths();
}

/// Makes each column wide enough for its title, so that a larger font cuts none.
void StreetGrid::setWidths() {
    const QFontMetrics metrics = horizontalHeader()->fontMetrics();
    for (int column = 0; column < model_->columnCount(); ++column) {
        const QString title = model_->headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
        setColumnWidth(column, std::max(leastWidths[static_cast<std::size_t>(column)],
                                        metrics.horizontalAdvance(title) + titleMargins));
    }
    fitNameColumn();
}

void StreetGrid::fitNameColumn() {
    int room = viewport()->width() - nameSlack;
    for (int column = 0; column < model_->columnCount(); ++column) {
        if (column != nameColumn) {
            room -= columnWidth(column);
        }
    }
    setColumnWidth(nameColumn, std::max(leastWidths[nameColumn], room));
}

void StreetGrid::showRanges(bool show) {
    model_->showRanges(show);
    setWidths();
}

void StreetGrid::clearStreets() {
    model_->clear();
    setCurrentIndex(model_->index(0, 0));
}

void StreetGrid::append(std::vector<ImportedStreet> streets) {
    model_->append(std::move(streets));
    executeDelayedItemsLayout(); // or the view would scroll to the row too early
    setCurrentIndex(model_->index(model_->rowCount() - 1, 0));
}

const std::vector<ImportedStreet>& StreetGrid::streets() const { return model_->streets(); }

QSize StreetGrid::minimumSizeHint() const {
    int width = nameSlack + 2 * frameWidth() + verticalScrollBar()->sizeHint().width();
    for (int column = 0; column < model_->columnCount(); ++column) {
        width += column == nameColumn ? leastWidths[nameColumn] : columnWidth(column);
    }
    const int height = horizontalHeader()->sizeHint().height() +
                       leastRows * verticalHeader()->defaultSectionSize() + 2 * frameWidth();
    return {width, height};
}

void StreetGrid::resizeEvent(QResizeEvent* event) {
    QTableView::resizeEvent(event);
    fitNameColumn();
}

void StreetGrid::moveRow(int row, int to) {
    model_->move(row, to);
    scrollTo(currentIndex());
}

/// Does by keyboard what dragging does.
void StreetGrid::keyPressEvent(QKeyEvent* event) {
    const bool isUp = event->key() == Qt::Key_Up;
    const bool moves = (isUp || event->key() == Qt::Key_Down) && event->modifiers() == Qt::ControlModifier;
    if (!moves) {
        QTableView::keyPressEvent(event);
        return;
    }
    const int row = currentIndex().row(), to = isUp ? row - 1 : row + 1;
    if (row >= 0 && to >= 0 && to < model_->rowCount()) {
        moveRow(row, to);
    }
}

void StreetGrid::mousePressEvent(QMouseEvent* event) {
    QTableView::mousePressEvent(event);
    isDragging_ = event->button() == Qt::LeftButton && rowAt(event->position().toPoint().y()) >= 0;
}

/// The dragged row follows the mouse.
void StreetGrid::mouseMoveEvent(QMouseEvent* event) {
    if (!isDragging_ || !(event->buttons() & Qt::LeftButton)) {
        return;
    }
    const int row = currentIndex().row(), to = rowAt(event->position().toPoint().y());
    if (row >= 0 && to >= 0) {
        moveRow(row, to);
    }
}

void StreetGrid::mouseReleaseEvent(QMouseEvent* event) {
    isDragging_ = false;
    QTableView::mouseReleaseEvent(event);
}

} // namespace ambrel
