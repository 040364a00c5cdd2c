// Key preview of the dialogs.
#include "dialogs/common/FormKeys.h"

#include <QApplication>
#include <QDialog>
#include <QKeyEvent>
#include <QPushButton>
#include <QShortcutEvent>
#include <utility>

#include "services/EventGuard.h"
#include "services/KeyCodes.h"
#include "services/KeyMap.h"

namespace ambrel {
namespace {

constexpr auto heldModifiers = Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier;

/// Presses a button for the user. A disabled one still runs its handlers.
void click(QPushButton& button) {
    if (button.isEnabled()) {
        button.click();
    } else {
        emit button.clicked();
    }
}

} // namespace

FormKeys::FormKeys(QDialog& dialog, QPushButton& cancel, Handler handler)
    : QObject(&dialog), dialog_(dialog), cancel_(cancel), handler_(std::move(handler)) {
    for (QPushButton* const button : dialog.findChildren<QPushButton*>()) {
        button->setAutoDefault(false);
        button->setDefault(false);
    }
    qApp->installEventFilter(this); // so that it also sees controls added later
}

bool FormKeys::eventFilter(QObject* watched, QEvent* event) {
    const QEvent::Type type = event->type();
    if (type != QEvent::KeyPress && type != QEvent::KeyRelease && type != QEvent::ShortcutOverride &&
        type != QEvent::Shortcut) {
        return false;
    }
    if (!watched->isWidgetType()) {
        return false;
    }
    auto& control = *static_cast<QWidget*>(watched);
    if (control.window() != &dialog_) {
        return false;
    }
    if (type == QEvent::Shortcut) {
        return pressByLetter(control, static_cast<const QShortcutEvent&>(*event));
    }
    if (type != QEvent::KeyPress) {
        told_ = nullptr; // one of these comes between a key and the next
        return false;
    }
    if (told_ && told_ != &control && control.isAncestorOf(told_)) {
        return false; // the control ignored the key, which is on its way up to its parents
    }
    told_ = &control;
    return press(control, static_cast<const QKeyEvent&>(*event));
}

/// Acts at once, because a button first shows itself pressed for a moment. Meanwhile the release of Alt in a
/// search box would search again, and the button would accept a row other than the chosen one.
bool FormKeys::pressByLetter(QWidget& control, const QShortcutEvent& event) {
    const QPointer<QPushButton> button = qobject_cast<QPushButton*>(&control);
    if (!button || event.isAmbiguous()) {
        return false;
    }
    button->click();
    return true;
}

/// True if the key was used. The code called may close the dialog and delete it.
bool FormKeys::press(QWidget& control, const QKeyEvent& event) {
    const std::uint16_t key = keyCode(event);
    const bool alone = !(event.modifiers() & heldModifiers);
    if (key == key_code::escape && alone) {
        click(cancel_);
        return true;
    }
    QPointer<QPushButton> button = qobject_cast<QPushButton*>(&control);
    bool used = false;
    if (const Handler handler = handler_) {
        runGuarded([&] { used = handler(key, event.modifiers()); });
    }
    if (!used && button && key == key_code::enter && alone) {
        button->click();
        return true;
    }
    return used;
}

bool enterMovesOn(QWidget& dialog, std::uint16_t key) {
    if (key != key_code::enter) {
        return false;
    }
    // Given to the dialog itself, Tab also leaves a control that would keep it, and no handler sees it.
    QKeyEvent tab(QEvent::KeyPress, Qt::Key_Tab, Qt::NoModifier);
    static_cast<QObject&>(dialog).event(&tab);
    return true;
}

} // namespace ambrel
