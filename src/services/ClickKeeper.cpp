// Clicks whose focus change brings up a message before they reach their control.
#include "services/ClickKeeper.h"

#include <QCoreApplication>
#include <QMouseEvent>
#include <utility>

namespace ambrel {
namespace {

/// Native children of a window, which Qt also creates for a widget's siblings, receive the mouse themselves.
bool isWithin(const QWindow* pressed, const QWindow* window) {
    return pressed && window && (pressed == window || window->isAncestorOf(pressed));
}

} // namespace

ClickKeeper::ClickKeeper(QObject* parent) : QObject(parent) { qApp->installEventFilter(this); }

/// A press goes to its window first and then, after the focus has moved, to a control.
bool ClickKeeper::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        if (watched->isWindowType()) {
            press_ = Press{.window = static_cast<QWindow*>(watched)};
        } else if (watched->isWidgetType() && press_) {
            return !deliver(*std::exchange(press_, std::nullopt), static_cast<QWidget&>(*watched),
                            static_cast<const QMouseEvent&>(*event));
        }
        return false;
    case QEvent::WindowBlocked:
        for (Press& press : waiting_) {
            press.isInterrupted |= press.window == watched;
        }
        return false;
    default:
        return false;
    }
}

void ClickKeeper::run(QWidget& window, const std::function<void()>& handlers) {
    if (!press_ || !isWithin(press_->window, window.windowHandle())) {
        handlers();
        return;
    }
    press_->window = window.windowHandle(); // the one that messages block
    const QPointer<QWidget> alive = &window;
    const QPointer<QWidget> clicked = window.focusWidget();
    waiting_.push_back(*std::exchange(press_, std::nullopt)); // the message gets presses of its own
    handlers();
    press_ = waiting_.back();
    waiting_.pop_back();
    press_->isAway = !alive || !alive->isVisible() || !clicked || alive->focusWidget() != clicked;
}

/// False if the control must not receive its press. The release is posted even if the button is still down: a
/// window that was blocked has forgotten which control it belongs to.
bool ClickKeeper::deliver(const Press& press, QWidget& control, const QMouseEvent& event) {
    if (!press.isInterrupted) {
        return true;
    }
    if (press.isAway) {
        return false;
    }
    QCoreApplication::postEvent(&control,
                                new QMouseEvent(QEvent::MouseButtonRelease, event.position(),
                                                event.scenePosition(), event.globalPosition(), event.button(),
                                                Qt::NoButton, event.modifiers(), event.pointingDevice()));
    return true;
}

} // namespace ambrel
