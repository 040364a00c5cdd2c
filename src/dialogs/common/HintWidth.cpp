// Measures the hints of a dialog.
#include "dialogs/common/HintWidth.h"

#include <QFontMetrics>
#include <QWidget>
#include <algorithm>

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
    bar.setMinimumWidth(std::max(bar.minimumWidth(), widestHint(dialog, bar) + margins));
}

} // namespace ambrel
