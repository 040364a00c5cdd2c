// Focus colour and status bar of the dialogs.
#include "dialogs/common/FocusHelp.h"

#include <QComboBox>
#include <QCursor>
#include <QEnterEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QStatusBar>
#include <utility>

#include "dialogs/common/ComboWheel.h"
#include "dialogs/common/EditMenu.h"
#include "dialogs/common/TextBeginning.h"
#include "services/EventGuard.h"
#include "services/FocusEvents.h"
#include "services/Rvarias.h"

namespace ambrel {

FocusHelp::FocusHelp(QWidget& dialog, QStatusBar& bar) : QObject(&dialog), bar_(bar) {
    for (QWidget* const control : dialog.findChildren<QWidget*>()) {
        if (!control->toolTip().isEmpty() && control->accessibleDescription().isEmpty()) {
            control->setAccessibleDescription(control->toolTip());
        }
    }
    for (QComboBox* const combo : dialog.findChildren<QComboBox*>()) {
        new ComboWheel(combo);
    }
    for (QLineEdit* const edit : dialog.findChildren<QLineEdit*>()) {
        new EditMenu(edit);
    }
}

void FocusHelp::TomaFoco(QWidget* control) {
    TomaFocoControl(control);
    bar_.showMessage(control->toolTip());
    if (!std::exchange(isOpening_, false)) {
        return;
    }
    auto* const combo = qobject_cast<QComboBox*>(control);
    if (auto* const box = combo ? combo->lineEdit() : qobject_cast<QLineEdit*>(control)) {
        selectFromBeginning(*box);
    }
}

void FocusHelp::DejaFoco(QWidget* control) {
    DejaFocoControl(control);
    clearHint();
}

void FocusHelp::TomaFocoBoton(QWidget* button) {
    bar_.showMessage(button->toolTip());
    if (button->hasFocus()) { // not just the mouse over it
        isOpening_ = false;
    }
}

// The mouse leaving a button clears the hint, whatever has the focus.
void FocusHelp::DejaFocoBoton() { clearHint(); }

void FocusHelp::showOutcome(const QString& text) {
    outcome_ = text;
    resting_ = QCursor::pos();
    clearHint();
}

// The mouse leaving the button, and so its hint, must not remove the outcome just shown.
void FocusHelp::clearHint() { bar_.showMessage(outcome_); }

void FocusHelp::watchEdit(QWidget* edit, std::function<void()> onEnter, std::function<void()> onExit) {
    if (!onEnter) {
        onEnter = [this, edit] { TomaFoco(edit); };
    }
    if (!onExit) {
        onExit = [this, edit] { DejaFoco(edit); };
    }
    FocusEvents::watch(edit, std::move(onEnter), std::move(onExit));
}

void FocusHelp::watchButton(QPushButton* button) {
    watchFocus(button);
    button->installEventFilter(this);
}

void FocusHelp::watchGrid(QWidget* grid) { watchFocus(grid); }

void FocusHelp::watchFocus(QWidget* control) {
    FocusEvents::watch(
        control, [this, control] { TomaFocoBoton(control); }, [this] { DejaFocoBoton(); });
}

/// A mouse that has not moved enters the control under it when the window above disappears.
bool FocusHelp::isResting(const QEvent& event) const {
    const auto* const enter = dynamic_cast<const QEnterEvent*>(&event);
    return enter && resting_ == enter->globalPosition().toPoint();
}

bool FocusHelp::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Enter && !isResting(*event)) {
        runGuarded([&] { TomaFocoBoton(static_cast<QWidget*>(watched)); });
    } else if (event->type() == QEvent::Leave) {
        runGuarded([&] { DejaFocoBoton(); });
    }
    return false;
}

} // namespace ambrel
