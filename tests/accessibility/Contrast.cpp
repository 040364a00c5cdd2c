// Measures the contrast of drawn texts.
#include "accessibility/Contrast.h"

#include <QHash>
#include <QImage>
#include <QPixmap>
#include <algorithm>
#include <cmath>

namespace accessibility_tests {
namespace {

double linear(double channel) {
    return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double luminance(const QColor& colour) {
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
           0.0722 * linear(colour.blueF());
}

} // namespace

double contrast(const QColor& one, const QColor& other) {
    const auto [darker, brighter] = std::minmax({luminance(one), luminance(other)});
    return (brighter + 0.05) / (darker + 0.05);
}

DrawnText drawnIn(QWidget& widget, const QRect& part) {
    const QImage image = widget.grab(part).toImage().convertToFormat(QImage::Format_RGB32);
    QHash<QRgb, int> pixels;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            ++pixels[image.pixel(x, y)];
        }
    }
    DrawnText drawn;
    int most = 0;
    for (auto pixel = pixels.cbegin(); pixel != pixels.cend(); ++pixel) {
        if (pixel.value() > most) {
            most = pixel.value();
            drawn.background = pixel.key();
        }
    }
    drawn.text = drawn.background;
    for (auto pixel = pixels.cbegin(); pixel != pixels.cend(); ++pixel) {
        if (contrast(drawn.background, pixel.key()) > contrast(drawn.background, drawn.text)) {
            drawn.text = pixel.key();
        }
    }
    return drawn;
}

} // namespace accessibility_tests
