// Draws outlines.
#include "host/OutlinedStyle.h"

#include <QEvent>
#include <QGroupBox>
#include <QPainter>
#include <QStyleOption>
#include <QWidget>

namespace host {
namespace {

constexpr int blackLightness = 24; // of 255
constexpr int darkLightness = 128;
constexpr double roundness = 2; // of Fusion's boxes and buttons
constexpr int focusWidth = 2;
constexpr int brighter = 170; // per cent
constexpr int titleGap = 3;   // Fusion's, between a group's title and its frame
/// Of the text's colour in an outline; half of it is too little on the brighter pages of a dark window.
constexpr double textShare = 0.55;

enum class Shape { None, Box, Round };

Shape shapeOf(QStyle::PrimitiveElement element, const QStyleOption& option) {
    switch (element) {
    case QStyle::PE_FrameLineEdit:
    case QStyle::PE_PanelButtonCommand:
    case QStyle::PE_PanelMenu:
    case QStyle::PE_IndicatorCheckBox:
        return Shape::Box;
    case QStyle::PE_IndicatorRadioButton:
        return Shape::Round;
    case QStyle::PE_Frame:
    case QStyle::PE_FrameTabWidget:
        return isHighContrast(option.palette) ? Shape::Box : Shape::None;
    default:
        return Shape::None;
    }
}

QColor outlineColour(const QPalette& palette) {
    const QColor text = palette.color(QPalette::WindowText), window = palette.color(QPalette::Window);
    if (isHighContrast(palette)) {
        return text;
    }
    const auto mixed = [](int of, int with) { return qRound(of + textShare * (with - of)); };
    return {mixed(window.red(), text.red()), mixed(window.green(), text.green()),
            mixed(window.blue(), text.blue())};
}

/// Fusion's line of another colour is hard to tell from an outline that is seen.
QPen focusPen(const QPalette& palette) {
    const QColor highlight = palette.color(QPalette::Highlight);
    const bool isDark = palette.color(QPalette::Window).lightness() < darkLightness;
    return {isDark ? highlight.lighter(brighter) : highlight, focusWidth};
}

bool hasFocus(const QStyleOption& option) { return option.state.testFlag(QStyle::State_HasFocus); }

/// The frame of a group begins below its title.
QRect groupFrame(const QStyleOption& option, const QWidget* widget) {
    const auto* const group = qobject_cast<const QGroupBox*>(widget);
    const bool hasTitle = group && !group->title().isEmpty();
    return option.rect.adjusted(0, hasTitle ? option.fontMetrics.height() + titleGap : 0, 0, 0);
}

/// Fusion marks the button that Return presses with its outline.
bool isDefaultButton(const QStyleOption& option) {
    const auto* const button = qstyleoption_cast<const QStyleOptionButton*>(&option);
    return button && button->features.testFlag(QStyleOptionButton::DefaultButton);
}

void outline(Shape shape, const QRect& place, const QPen& pen, QPainter& painter) {
    if (shape == Shape::None) {
        return;
    }
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(pen);
    const double inset = pen.widthF() / 2;
    const QRectF line = QRectF(place).adjusted(inset, inset, -inset, -inset);
    if (shape == Shape::Round) {
        painter.drawEllipse(line);
    } else {
        painter.drawRoundedRect(line, roundness, roundness);
    }
    painter.restore();
}

/// Fusion would veil the text of the cell with the focus.
void outlineCell(const QStyleOption& option, QPainter& painter) {
    const bool isChosen = option.state.testFlag(QStyle::State_Selected);
    painter.save();
    painter.setBrush(Qt::NoBrush);
    painter.setPen(
        option.palette.color(QPalette::Active, isChosen ? QPalette::HighlightedText : QPalette::Text));
    painter.drawRect(option.rect.adjusted(1, 1, -2, -2));
    painter.restore();
}

} // namespace

bool isHighContrast(const QPalette& palette) {
    const QColor window = palette.color(QPalette::Window);
    return window.lightness() < blackLightness || window == Qt::white;
}

OutlinedStyle::OutlinedStyle() : QProxyStyle(QStringLiteral("Fusion")) {}

void OutlinedStyle::polish(QWidget* widget) {
    QProxyStyle::polish(widget);
    if (widget->isWindow()) {
        widget->installEventFilter(this);
    }
}

/// The toolkit forgets it whenever a window is shown.
bool OutlinedStyle::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Show && watched->isWidgetType()) {
        static_cast<QWidget*>(watched)->setAttribute(Qt::WA_KeyboardFocusChange);
    }
    return QProxyStyle::eventFilter(watched, event);
}

void OutlinedStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                                  const QWidget* widget) const {
    if (element == PE_FrameFocusRect && option->state.testFlag(State_Item)) {
        return outlineCell(*option, *painter);
    }
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    if (element == PE_PanelButtonCommand && hasFocus(*option)) {
        outline(Shape::Box, option->rect, focusPen(option->palette), *painter);
    } else if (element == PE_FrameGroupBox && isHighContrast(option->palette)) {
        outline(Shape::Box, groupFrame(*option, widget), outlineColour(option->palette), *painter);
    } else if (!isDefaultButton(*option) && !(element == PE_FrameLineEdit && hasFocus(*option))) {
        outline(shapeOf(element, *option), option->rect, outlineColour(option->palette), *painter);
    }
}

void OutlinedStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                                const QWidget* widget) const {
    QProxyStyle::drawControl(element, option, painter, widget);
    if (element == CE_ProgressBarGroove ||
        (element == CE_TabBarTabShape && isHighContrast(option->palette))) {
        outline(Shape::Box, option->rect, outlineColour(option->palette), *painter);
    }
}

void OutlinedStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                       QPainter* painter, const QWidget* widget) const {
    QProxyStyle::drawComplexControl(control, option, painter, widget);
    const bool isChoice = control == CC_ComboBox;
    if (isChoice && hasFocus(*option)) {
        outline(Shape::Box, option->rect, focusPen(option->palette), *painter);
    } else if (isChoice || (control == CC_SpinBox && !hasFocus(*option))) {
        outline(Shape::Box, option->rect, outlineColour(option->palette), *painter);
    } else if (control == CC_ScrollBar) {
        outline(Shape::Box, subControlRect(control, option, SC_ScrollBarSlider, widget),
                outlineColour(option->palette), *painter);
    }
}

} // namespace host
