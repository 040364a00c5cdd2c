// Room that a window may take up on its screen.
#pragma once

#include <QSize>

class QWidget;

namespace ambrel {

/// Limits a size in logical pixels to the room on the window's screen, inside a window manager's frame.
[[nodiscard]] QSize withinScreen(const QWidget& window, QSize wanted);

/// The least size at which the window's layout holds all that is in it now; its layouts need not be up to
/// date.
[[nodiscard]] QSize neededSize(const QWidget& window);

/// Moves the window's controls closer together if a window of this minimum size does not fit the screen, and
/// closer still if its layout does not fit then.
void tightenOnSmallScreen(QWidget& window, QSize leastSize);

} // namespace ambrel
