// The icons of message boxes.
#pragma once

#include <QPixmap>

#include "services/MessageBox.h"

namespace ambrel {

/// Draws the icon for this size and device pixel ratio, so that it is sharp on every screen; the toolkit's
/// own icons are bitmaps of one size.
[[nodiscard]] QPixmap messageIcon(MessageKind kind, int size, qreal devicePixelRatio);

} // namespace ambrel
