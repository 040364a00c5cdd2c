// The pictures of message boxes.
#pragma once

#include <QPixmap>

#include "services/MessageBox.h"

namespace ambrel {

/// Drawn anew for each size and ratio of device pixels, so that it is sharp on every screen; the toolkit's
/// own are bitmaps of one size.
[[nodiscard]] QPixmap messageIcon(MessageKind kind, int size, qreal devicePixelRatio);

} // namespace ambrel
