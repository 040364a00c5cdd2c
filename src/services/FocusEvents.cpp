// Following the focus through the windows of the application.
#include "services/FocusEvents.h"

#include <QApplication>
#include <QMenu>
#include <QMenuBar>
#include <utility>

#include "services/ClickKeeper.h"
#include "services/EventGuard.h"

namespace ambrel {
namespace {

/// How many handlers run for one move, so that two that send the focus to each other come to an end.
constexpr int patience = 16;

/// A menu takes the focus only for a while and gives it back.
bool isMenu(const QWidget* widget) {
    return qobject_cast<const QMenu*>(widget) || qobject_cast<const QMenuBar*>(widget);
}

} // namespace

FocusEvents::FocusEvents(QObject* application) : QObject(application), clicks_(new ClickKeeper(this)) {
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) { follow(now); });
}

FocusEvents& FocusEvents::instance() {
    static QPointer<FocusEvents> events;
    if (!events) {
        events = new FocusEvents(qApp);
    }
    return *events;
}

void FocusEvents::watch(QWidget* control, Handler onEnter, Handler onExit) {
    FocusEvents& events = instance();
    if (!events.handlers_.contains(control)) {
        connect(control, &QObject::destroyed, &events,
                [&events, control] { events.handlers_.remove(control); });
    }
    events.handlers_.insert(control, {std::move(onEnter), std::move(onExit)});
    if (events.controlOf(QApplication::focusWidget()) == control) {
        events.stateOf(control->window())->control =
            control; // already in use: only its exit is still to come
    }
}

void FocusEvents::unwatch(QWidget* control) { instance().handlers_.remove(control); }

/// The watched control that a widget is or belongs to; null if there is none.
QWidget* FocusEvents::controlOf(QWidget* focused) const {
    for (QWidget* widget = focused; widget; widget = widget->isWindow() ? nullptr : widget->parentWidget()) {
        if (handlers_.contains(widget)) {
            return widget;
        }
    }
    return nullptr;
}

std::shared_ptr<FocusEvents::Window> FocusEvents::stateOf(QWidget* window) {
    std::shared_ptr<Window>& state = windows_[window];
    if (!state) {
        state = std::make_shared<Window>();
        connect(window, &QObject::destroyed, this, [this, window] { windows_.remove(window); });
    }
    return state;
}

void FocusEvents::follow(QWidget* focused) {
    if (!focused || isMenu(focused)) {
        return;
    }
    QWidget* const window = focused->window();
    if (windows_.contains(window) || controlOf(focused)) {
        handleMove(window);
    }
}

void FocusEvents::handleMove(QWidget* window) {
    const std::shared_ptr<Window> state = stateOf(window);
    if (state->running) {
        return;
    }
    state->running = true;
    clicks_->run(*window, [&] { runHandlers(*window, *state); });
    state->running = false;
}

/// Runs exit and enter handlers until the control entered last is the one with the window's focus.
void FocusEvents::runHandlers(QWidget& window, Window& state) const {
    const QPointer<QWidget> alive = &window;
    for (int count = 0; alive && count < patience; ++count) {
        QWidget* const focused = window.focusWidget();
        QWidget* const target = controlOf(focused);
        if (target == state.control || isMenu(focused)) {
            break;
        }
        if (state.control) {
            run(std::exchange(state.control, nullptr), &Handlers::onExit);
        } else {
            state.control = target;
            run(target, &Handlers::onEnter);
        }
    }
}

void FocusEvents::run(QWidget* control, Handler Handlers::*which) const {
    const auto found = handlers_.constFind(control);
    if (found == handlers_.cend()) {
        return;
    }
    if (const Handler handler = (*found).*which) { // a copy: the handler may remove the control
        runGuarded(handler);
    }
}

} // namespace ambrel
