// Key-up handlers of controls.
#include "services/KeyUpEvents.h"

#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QPointer>
#include <QWidget>
#include <algorithm>
#include <utility>

#include "services/EventGuard.h"
#include "services/KeyCodes.h"
#include "services/KeyMap.h"

namespace ambrel {
namespace {

/// Stands for the key of a composed letter; only the input method knows the real one.
constexpr int unknownKey = Qt::Key_unknown;

} // namespace

KeyUpEvents* KeyUpEvents::watch(QWidget* control, Handler handler) {
    return new KeyUpEvents(control, std::move(handler));
}

KeyUpEvents::KeyUpEvents(QWidget* control, Handler handler)
    : QObject(control), control_(control), handler_(std::move(handler)) {
    control->installEventFilter(this);
}

bool KeyUpEvents::eventFilter(QObject*, QEvent* event) {
    switch (event->type()) {
    case QEvent::KeyPress:
        notePress(static_cast<const QKeyEvent&>(*event));
        return false;
    case QEvent::InputMethod:
        noteText(static_cast<const QInputMethodEvent&>(*event));
        return false;
    case QEvent::FocusIn: // not FocusOut: an exit handler may still ask for the pending ones
        presses_.clear();
        return false;
    case QEvent::KeyRelease:
        return release(static_cast<const QKeyEvent&>(*event));
    default:
        return false;
    }
}

void KeyUpEvents::notePress(const QKeyEvent& event) {
    if (event.isAutoRepeat()) {
        return;
    }
    if (const auto old = pressOf(event); old != presses_.end()) {
        presses_.erase(old); // it was released elsewhere, or a filter sends the same press again
    }
    presses_.push_back({event.key(), event.nativeScanCode(), keyCode(event), event.modifiers()});
}

void KeyUpEvents::noteText(const QInputMethodEvent& event) {
    if (event.commitString().isEmpty()) {
        return;
    }
    notePress({QEvent::KeyPress, unknownKey, Qt::NoModifier, event.commitString().last(1)});
}

KeyUpEvents::Presses::iterator KeyUpEvents::pressOf(const QKeyEvent& event) {
    return std::ranges::find_if(presses_, [&](const Press& press) {
        if (press.scanCode != 0 && event.nativeScanCode() != 0) {
            return press.scanCode == event.nativeScanCode();
        }
        return press.key == event.key();
    });
}

bool KeyUpEvents::release(const QKeyEvent& event) {
    if (event.isAutoRepeat()) {
        return false;
    }
    auto found = pressOf(event);
    if (found == presses_.end()) {
        found = std::ranges::find(presses_, unknownKey, &Press::key);
    }
    if (found == presses_.end()) {
        return false;
    }
    const Press press = *found;
    presses_.erase(found);
    if (!control_->isVisible() || !control_->isActiveWindow()) {
        return false;
    }
    const std::uint16_t left = tell(press);
    return press.code != key_code::none && left == key_code::none;
}

void KeyUpEvents::releasePending() {
    const QPointer<KeyUpEvents> alive = this;
    for (const Press& press : std::exchange(presses_, {})) {
        if (alive && isAlphanumeric(static_cast<unsigned char>(press.code))) {
            static_cast<void>(tell(press));
        }
    }
}

/// Returns the code as the handler left it. The handler may delete the control, and this object with it.
std::uint16_t KeyUpEvents::tell(const Press& press) const {
    const Handler handler = handler_;
    std::uint16_t key = press.code;
    runGuarded([&] { handler(key, press.modifiers); });
    return key;
}

} // namespace ambrel
