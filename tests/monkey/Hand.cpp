// Sends the events of keyboard and mouse.
#include "monkey/Hand.h"

#include <QGuiApplication>
#include <QPointer>
#include <QTest>
#include <QWidget>
#include <QWindow>

namespace monkey {
namespace {

std::function<void()> keyEvent(QEvent::Type type, int key, Qt::KeyboardModifiers modifiers,
                               const QString& text) {
    return [=] {
        if (QWindow* const window = QGuiApplication::focusWindow()) {
            qt_handleKeyEvent(window, type, key, modifiers, text);
        }
    };
}

std::function<void()> mouseEvent(QWidget& widget, const QPoint& place, Qt::MouseButton button,
                                 QEvent::Type type) {
    return [widget = QPointer<QWidget>(&widget), place, button, type] {
        QWindow* const window = widget ? widget->window()->windowHandle() : nullptr;
        if (window == nullptr) {
            return; // it has gone away since
        }
        const QPoint local = widget->mapTo(widget->window(), place);
        const bool isDown = type != QEvent::MouseButtonRelease;
        static int time = 0;
        qt_handleMouseEvent(window, local, window->mapToGlobal(local),
                            isDown ? Qt::MouseButtons(button) : Qt::NoButton, button, type, Qt::NoModifier,
                            time += 1);
    };
}

} // namespace

void Hand::strike(int key, Qt::KeyboardModifiers modifiers, const QString& text) {
    queue_.push_back(keyEvent(QEvent::KeyPress, key, modifiers, text));
    queue_.push_back(keyEvent(QEvent::KeyRelease, key, modifiers, text));
}

void Hand::type(const QString& text) {
    for (const QChar letter : text) {
        strike(letter.toUpper().unicode(), Qt::NoModifier, letter);
    }
}

void Hand::selectAll() {
    strike(Qt::Key_Home);
    strike(Qt::Key_End, Qt::ShiftModifier);
}

void Hand::click(QWidget& widget, const QPoint& place, Qt::MouseButton button) {
    queue_.push_back(mouseEvent(widget, place, button, QEvent::MouseButtonPress));
    queue_.push_back(mouseEvent(widget, place, button, QEvent::MouseButtonRelease));
}

void Hand::doubleClick(QWidget& widget, const QPoint& place) {
    click(widget, place);
    click(widget, place);
}

void Hand::move() {
    if (isBusy()) {
        const auto act = std::move(queue_.front());
        queue_.pop_front();
        act();
    }
}

} // namespace monkey
