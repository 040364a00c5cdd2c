// Draws outlines.
#include "host/OutlinedStyle.h"

#include <QPainter>
#include <QStyleOption>

namespace host {
namespace {

enum class Shape { None, Box, Round };

Shape shapeOf(QStyle::PrimitiveElement element) {
    switch (element) {
    case QStyle::PE_FrameLineEdit:
    case QStyle::PE_FrameGroupBox:
    case QStyle::PE_PanelButtonCommand:
    case QStyle::PE_IndicatorCheckBox:
        return Shape::Box;
    case QStyle::PE_IndicatorRadioButton:
        return Shape::Round;
    default:
        return Shape::None;
    }
}

/// Fusion marks the focus in the same place; of other controls than edits only one that the keyboard brought.
bool showsFocus(const QStyleOption& option, bool isEdit) {
    return option.state.testFlag(QStyle::State_HasFocus) &&
           (isEdit || option.state.testFlag(QStyle::State_KeyboardFocusChange));
}

void outline(Shape shape, const QStyleOption& option, QPainter& painter) {
    if (shape == Shape::None) {
        return;
    }
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(option.palette.color(QPalette::WindowText));
    const QRectF place = QRectF(option.rect).adjusted(0.5, 0.5, -0.5, -0.5);
    if (shape == Shape::Round) {
        painter.drawEllipse(place);
    } else {
        painter.drawRect(place);
    }
    painter.restore();
}

} // namespace

OutlinedStyle::OutlinedStyle() : QProxyStyle(QStringLiteral("Fusion")) {}

void OutlinedStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                                  const QWidget* widget) const {
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    if (!showsFocus(*option, element == PE_FrameLineEdit)) {
        outline(shapeOf(element), *option, *painter);
    }
}

void OutlinedStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                       QPainter* painter, const QWidget* widget) const {
    QProxyStyle::drawComplexControl(control, option, painter, widget);
    if ((control == CC_ComboBox || control == CC_SpinBox) && !showsFocus(*option, control == CC_SpinBox)) {
        outline(Shape::Box, *option, *painter);
    }
}

} // namespace host
