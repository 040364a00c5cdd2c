// Room for a dialog's hints, which are the tool tips of its controls, and for the captions of its buttons.
#pragma once

class QWidget;

namespace ambrel {

/// Width of the dialog's longest hint in the font of its status bar.
[[nodiscard]] int widestHint(const QWidget& dialog, const QWidget& bar);

/// Makes the bar, and so the dialog, wide enough for every hint and the margins beside it, as far as the
/// screen has room.
void fitHints(const QWidget& dialog, QWidget& bar, int margins);

/// Makes each button large enough for its caption. A minimum size set in a form replaces the caption's own,
/// which may be larger.
void fitCaptions(const QWidget& dialog);

} // namespace ambrel
