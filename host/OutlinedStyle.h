// The look of controls.
#pragma once

#include <QProxyStyle>

namespace host {

/// Whether somebody chose these colours to see better.
[[nodiscard]] bool isHighContrast(const QPalette& palette);

/// Fusion with outlines that everybody sees. Fusion's own are a shade of the window: faint on a light one,
/// hardly there on a dark one, and not there at all on a black one. Where the keyboard is can be seen from
/// the beginning, not only after the first Tab.
class OutlinedStyle : public QProxyStyle {
public:
    OutlinedStyle();

    using QProxyStyle::polish;
    void polish(QWidget* widget) override;
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                            const QWidget* widget) const override;
    bool eventFilter(QObject* watched, QEvent* event) override;
};

} // namespace host
