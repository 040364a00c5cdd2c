// The look in high contrast.
#pragma once

#include <QProxyStyle>

namespace host {

/// Fusion with outlines in the colour of the text. Fusion's own are a darker shade of the window, and so not
/// there at all on a black one.
class OutlinedStyle : public QProxyStyle {
public:
    OutlinedStyle();

    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                            const QWidget* widget) const override;
};

} // namespace host
