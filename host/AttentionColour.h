// The colour of what somebody has to look at.
#pragma once

#include <QColor>
#include <QPalette>

namespace host {

/// Amber that is seen on the given background.
[[nodiscard]] inline QColor attentionColour(const QPalette& palette) {
    constexpr int darkLightness = 128; // of 255
    const bool isDark = palette.color(QPalette::Base).lightness() < darkLightness;
    return isDark ? QColor(0xe0, 0x9b, 0x3a) : QColor(0xb2, 0x6a, 0x00);
}

} // namespace host
