// Key-up handlers of controls.
#include "services/KeyUpEvents.h"

#include <QKeyEvent>
#include <QWidget>
#include <utility>

#include "services/EventGuard.h"
#include "services/KeyCodes.h"
#include "services/KeyMap.h"

namespace ambrel {

KeyUpEvents* KeyUpEvents::watch(QWidget* control, Handler handler) {
    return new KeyUpEvents(control, std::move(handler));
}

KeyUpEvents::KeyUpEvents(QWidget* control, Handler handler) : QObject(control), handler_(std::move(handler)) {
    control->installEventFilter(this);
}

bool KeyUpEvents::eventFilter(QObject*, QEvent* event) {
    if (event->type() != QEvent::KeyRelease)
        return false;
    const auto& release = static_cast<const QKeyEvent&>(*event);
    if (release.isAutoRepeat())
        return false;
    const std::uint16_t told = keyCode(release);
    std::uint16_t key = told;
    const Handler handler = handler_; // the handler may delete the control, and this object with it
    const Qt::KeyboardModifiers modifiers = release.modifiers();
    runGuarded([&] { handler(key, modifiers); });
    return told != key_code::none && key == key_code::none;
}

} // namespace ambrel
