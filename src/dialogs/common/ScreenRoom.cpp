// Measures the screen.
#include "dialogs/common/ScreenRoom.h"

#include <QBoxLayout>
#include <QGridLayout>
#include <QScreen>
#include <QWidget>

namespace ambrel {
namespace {

constexpr QSize frame(4, 28); // of a window manager, logical pixels

void tighten(QLayout& layout) {
    const QMargins margins = layout.contentsMargins();
    layout.setContentsMargins(margins.left(), margins.top() / 2, margins.right(), margins.bottom() / 2);
    if (auto* const grid = qobject_cast<QGridLayout*>(&layout)) {
        grid->setVerticalSpacing(grid->verticalSpacing() / 2);
    } else if (auto* const column = qobject_cast<QVBoxLayout*>(&layout)) {
        column->setSpacing(column->spacing() / 2);
    }
}

} // namespace

QSize withinScreen(const QWidget& window, QSize wanted) {
    return wanted.boundedTo(window.screen()->availableSize() - frame);
}

void tightenOnSmallScreen(QWidget& window, QSize leastSize) {
    if (withinScreen(window, leastSize) == leastSize) {
        return;
    }
    for (QLayout* const layout : window.findChildren<QLayout*>()) {
        tighten(*layout);
    }
}

} // namespace ambrel
