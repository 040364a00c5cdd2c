// Places windows under edit boxes.
#include "form/UnderBox.h"

#include <QEvent>
#include <QScreen>
#include <QWidget>
#include <QWindow>
#include <algorithm>

namespace ambrel {

// A tool tip's window: window managers leave it alone, so that neither showing nor clicking it takes the
// keyboard from the box. It is not a pop-up, which would swallow the next click elsewhere.
void makeWindowUnderBox(QWidget& view) {
    view.setWindowFlags(Qt::ToolTip | Qt::FramelessWindowHint | Qt::WindowDoesNotAcceptFocus);
    view.setAttribute(Qt::WA_ShowWithoutActivating);
    view.setFocusPolicy(Qt::NoFocus);
}

QRect placeUnder(const QWidget& box, const QSize& wanted) {
    const QRect screen = box.screen()->availableGeometry();
    const QRect place(box.mapToGlobal(QPoint(0, 0)), box.size());
    const int below = screen.bottom() - place.bottom(), above = place.top() - screen.top();
    const bool isBelow = wanted.height() <= below || below >= above;
    const QSize size(std::min(std::max(wanted.width(), place.width()), screen.width()),
                     std::min(wanted.height(), isBelow ? below : above));
    const int left = std::max(screen.left(), std::min(place.left(), screen.right() + 1 - size.width()));
    return {QPoint(left, isBelow ? place.bottom() + 1 : place.top() - size.height()), size};
}

QPalette paletteUnder(const QWidget& box) {
    QPalette palette = box.window()->palette();
    const QColor text = palette.color(QPalette::Text), base = palette.color(QPalette::Base);
    const auto between = [](int a, int b) { return (a + b) / 2; };
    palette.setColor(QPalette::WindowText, // of the frame, in dark colours too
                     QColor(between(text.red(), base.red()), between(text.green(), base.green()),
                            between(text.blue(), base.blue())));
    return palette;
}

ElsewhereEvent elsewhereEvent(const QWidget& box, const QWidget& view, const QObject& watched,
                              const QEvent& event) {
    const QWidget* const window = box.window();
    const bool isWindow = &watched == window;
    const auto leftIf = [](bool isLeft) { return isLeft ? ElsewhereEvent::Left : ElsewhereEvent::None; };
    switch (event.type()) {
    case QEvent::MouseButtonPress:
        return leftIf(watched.isWidgetType() && &watched != &view &&
                      !view.isAncestorOf(static_cast<const QWidget*>(&watched)));
    case QEvent::Move:
    case QEvent::Resize:
        if (!isWindow && watched.isWidgetType() && static_cast<const QWidget&>(watched).isAncestorOf(&box)) {
            return ElsewhereEvent::Moved; // something in which the box lies was scrolled
        }
        if (isWindow && event.type() == QEvent::Resize) {
            return ElsewhereEvent::Moved; // a text that was typed or pasted may need another line elsewhere
        }
        return leftIf(isWindow);
    case QEvent::Hide:
    case QEvent::WindowDeactivate:
    case QEvent::WindowStateChange:
        return leftIf(isWindow);
    case QEvent::WindowBlocked:
        return leftIf(isWindow || &watched == window->windowHandle());
    default:
        return ElsewhereEvent::None;
    }
}

} // namespace ambrel
