// Measures the screen.
#include "dialogs/common/ScreenRoom.h"

#include <QBoxLayout>
#include <QGridLayout>
#include <QScreen>
#include <QWidget>
#include <algorithm>

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

QSize neededSize(const QWidget& window) {
    const QList<QLayout*> layouts = window.findChildren<QLayout*>();
    std::for_each(layouts.rbegin(), layouts.rend(), [](QLayout* layout) { layout->activate(); });
    return window.layout()->totalMinimumSize();
}

void tightenOnSmallScreen(QWidget& window, QSize leastSize) {
    // Twice where a large font takes up what the first time has gained.
    for (int time = 0; time < 2 && withinScreen(window, leastSize) != leastSize; ++time) {
        for (QLayout* const layout : window.findChildren<QLayout*>()) {
            tighten(*layout);
        }
        leastSize = {0, neededSize(window).height()};
    }
}

} // namespace ambrel
