// Fits a dialog of fixed width to its contents.
#include "dialogs/common/FixedWidth.h"

#include <QDialog>
#include <QEvent>
#include <QFontMetrics>
#include <QLayout>
#include <QStatusBar>
#include <algorithm>

#include "dialogs/common/HintWidth.h"
#include "services/EventGuard.h"

namespace ambrel {
namespace {

constexpr int textMargins = 20;      // free space beside a status bar's text
constexpr int textHeightMargins = 6; // above and below

} // namespace

FixedWidth::FixedWidth(QDialog& dialog, int width, int leastHeight, QStatusBar& bar)
    : QObject(&dialog), dialog_(dialog), bar_(bar), width_(width), leastHeight_(leastHeight) {
    dialog.installEventFilter(this);
    fit();
}

bool FixedWidth::eventFilter(QObject*, QEvent* event) {
    switch (event->type()) {
    case QEvent::Polish:
    case QEvent::Show:
    case QEvent::LayoutRequest: // a text changed, or the font of a control
    case QEvent::FontChange:
    case QEvent::StyleChange:
        runGuarded([this] { fit(); });
        break;
    default:
        break;
    }
    return false;
}

void FixedWidth::fit() {
    // The bar's own height comes from the widgets in it, and it has none.
    bar_.setMinimumHeight(bar_.fontMetrics().height() + textHeightMargins);
    const QSize needed = dialog_.layout()->totalMinimumSize();
    dialog_.setFixedWidth(std::max({width_, needed.width(), widestHint(dialog_, bar_) + textMargins}));
    dialog_.setMinimumHeight(std::max(leastHeight_, needed.height()));
}

} // namespace ambrel
