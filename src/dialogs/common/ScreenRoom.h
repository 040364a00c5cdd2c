// What a window may take of its screen.
#pragma once

#include <QSize>

class QWidget;

namespace ambrel {

/// A size in logical pixels, no larger than what the window's screen has room for inside the frame of a
/// window manager.
[[nodiscard]] QSize withinScreen(const QWidget& window, QSize wanted);

/// On a screen that a window of this least size does not fit, puts its controls closer to each other.
void tightenOnSmallScreen(QWidget& window, QSize leastSize);

} // namespace ambrel
