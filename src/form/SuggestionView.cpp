// Shows suggestions in a window of their own.
#include "form/SuggestionView.h"

#include <QPalette>
#include <QScreen>
#include <QScrollBar>
#include <algorithm>

#include "form/SuggestionRows.h"

namespace ambrel {
namespace {

constexpr int mostRows = 10; // seen at once

/// A frame that stands out from boxes of the same colour, in dark colours too.
QPalette withFrame(QPalette palette) {
    const QColor text = palette.color(QPalette::Text), base = palette.color(QPalette::Base);
    const auto between = [](int a, int b) { return (a + b) / 2; };
    palette.setColor(QPalette::WindowText,
                     QColor(between(text.red(), base.red()), between(text.green(), base.green()),
                            between(text.blue(), base.blue())));
    return palette;
}

SuggestionModel& modelOf(const QListView& view) { return static_cast<SuggestionModel&>(*view.model()); }

} // namespace

// A tool tip's window: window managers leave it alone, so that neither showing nor clicking it takes the
// keyboard from the box. It is not a pop-up, which would swallow the next click elsewhere.
SuggestionView::SuggestionView(QWidget& window) : QListView(&window) {
    setWindowFlags(Qt::ToolTip | Qt::FramelessWindowHint | Qt::WindowDoesNotAcceptFocus);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setObjectName(QStringLiteral("LSugerencias"));
    setAccessibleName(QStringLiteral("Sugerencias"));
    setFrameStyle(QFrame::Box | QFrame::Plain);
    setFocusPolicy(Qt::NoFocus);
    viewport()->setFocusPolicy(Qt::NoFocus);
    setEditTriggers(NoEditTriggers);
    setUniformItemSizes(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    auto* const model = new SuggestionModel(this);
    setModel(model);
    setItemDelegate(new SuggestionDelegate(*model, this));
}

void SuggestionView::setRows(const std::vector<SuggestionRow>& rows) { modelOf(*this).setRows(rows); }

void SuggestionView::setCurrentRow(int row) {
    if (row < 0) {
        selectionModel()->clear();
    } else {
        setCurrentIndex(model()->index(row, 0));
    }
}

int SuggestionView::visibleRows() const {
    return std::max(1, viewport()->height() / std::max(1, sizeHintForRow(0)));
}

QSize SuggestionView::wantedSize() const {
    const QSize row = itemDelegate()->sizeHint({}, {});
    const int rows = std::min(model()->rowCount(), mostRows);
    const int scrollBar = rows < model()->rowCount() ? verticalScrollBar()->sizeHint().width() : 0;
    return {row.width() + scrollBar + 2 * frameWidth(), rows * row.height() + 2 * frameWidth()};
}

void SuggestionView::showAt(const QWidget& box) {
    setFont(box.font());
    setPalette(withFrame(box.window()->palette()));
    static_cast<SuggestionDelegate*>(itemDelegate())->measure(box.font());
    const QRect screen = box.screen()->availableGeometry();
    const QRect place(box.mapToGlobal(QPoint(0, 0)), box.size());
    const QSize wanted = wantedSize();
    const int below = screen.bottom() - place.bottom(), above = place.top() - screen.top();
    const bool isBelow = wanted.height() <= below || below >= above;
    const QSize size(std::min(std::max(wanted.width(), place.width()), screen.width()),
                     std::min(wanted.height(), isBelow ? below : above));
    const int left = std::max(screen.left(), std::min(place.left(), screen.right() + 1 - size.width()));
    setGeometry(QRect(QPoint(left, isBelow ? place.bottom() + 1 : place.top() - size.height()), size));
    scrollToTop();
    show();
}

} // namespace ambrel
