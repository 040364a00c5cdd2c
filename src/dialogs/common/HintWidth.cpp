// Measures the hints and captions of a dialog.
#include "dialogs/common/HintWidth.h"

#include <QFontMetrics>
#include <QPushButton>
#include <QWidget>
#include <algorithm>

#include "dialogs/common/ScreenRoom.h"

namespace ambrel {

int widestHint(const QWidget& dialog, const QWidget& bar) {
    const QFontMetrics metrics = bar.fontMetrics();
    int widest = 0;
    for (const QWidget* const control : dialog.findChildren<QWidget*>()) {
        widest = std::max(widest, metrics.horizontalAdvance(control->toolTip()));
    }
    return widest;
}

void fitHints(const QWidget& dialog, QWidget& bar, int margins) {
    const QSize needed(widestHint(dialog, bar) + margins, 0);
    bar.setMinimumWidth(std::max(bar.minimumWidth(), withinScreen(dialog, needed).width()));
}

void fitCaptions(const QWidget& dialog) {
    for (QPushButton* const button : dialog.findChildren<QPushButton*>()) {
        button->ensurePolished();
        button->setMinimumSize(button->minimumSize().expandedTo(button->sizeHint()));
    }
}

} // namespace ambrel
