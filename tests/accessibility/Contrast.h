// How well texts can be told from what is behind them.
#pragma once

#include <QColor>
#include <QRect>
#include <QWidget>

namespace accessibility_tests {

/// What normal text needs at least.
inline constexpr double readableContrast = 4.5;

/// From 1, the same, to 21, black and white: of the relative luminances of the two colours.
[[nodiscard]] double contrast(const QColor& one, const QColor& other);

/// As drawn on the screen.
struct DrawnText {
    QColor background; // the commonest colour
    QColor text;       // the one that stands out most from it
};

/// What is drawn in a part of a widget, in its coordinates.
[[nodiscard]] DrawnText drawnIn(QWidget& widget, const QRect& part);

} // namespace accessibility_tests
