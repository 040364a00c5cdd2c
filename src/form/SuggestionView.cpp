// Shows suggestions in a window of their own.
#include "form/SuggestionView.h"

#include <QScrollBar>
#include <algorithm>

#include "form/SuggestionRows.h"
#include "form/UnderBox.h"

namespace ambrel {
namespace {

constexpr int mostRows = 10; // seen at once

SuggestionModel& modelOf(const QListView& view) { return static_cast<SuggestionModel&>(*view.model()); }

} // namespace

SuggestionView::SuggestionView(QWidget& window) : QListView(&window) {
    makeWindowUnderBox(*this);
    setObjectName(QStringLiteral("LSugerencias"));
    setAccessibleName(QStringLiteral("Sugerencias"));
    setFrameStyle(QFrame::Box | QFrame::Plain);
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
    setPalette(paletteUnder(box));
    static_cast<SuggestionDelegate*>(itemDelegate())->measure(box.font());
    setGeometry(placeUnder(box, wantedSize()));
    scrollToTop();
    show();
}

} // namespace ambrel
