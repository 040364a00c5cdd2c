// Room in the status bar for a dialog's hints, which are the tool tips of its controls.
#pragma once

class QWidget;

namespace ambrel {

/// Width of the dialog's longest hint in the font of its status bar.
[[nodiscard]] int widestHint(const QWidget& dialog, const QWidget& bar);

/// Makes the bar, and so the dialog, wide enough for every hint and the margins beside it.
void fitHints(const QWidget& dialog, QWidget& bar, int margins);

} // namespace ambrel
