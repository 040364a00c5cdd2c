// How well texts stand out from their background.
#pragma once

#include <QColor>
#include <QRect>
#include <QWidget>

namespace accessibility_tests {

/// Minimum for normal text.
inline constexpr double readableContrast = 4.5;

/// From 1, the same, to 21, black and white: the ratio of the relative luminances of the two colours.
[[nodiscard]] double contrast(const QColor& one, const QColor& other);

/// Colours as drawn on the screen.
struct DrawnText {
    QColor background; // the most common colour
    QColor text;       // the one that stands out most from it
};

/// The colours drawn in a part of a widget, in its coordinates.
[[nodiscard]] DrawnText drawnIn(QWidget& widget, const QRect& part);

} // namespace accessibility_tests
