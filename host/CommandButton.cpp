// A button whose mnemonic acts at once.
#include "host/CommandButton.h"

#include <QShortcutEvent>

namespace host {

bool CommandButton::event(QEvent* event) {
    if (event->type() == QEvent::Shortcut && !static_cast<QShortcutEvent*>(event)->isAmbiguous()) {
        setFocus(Qt::ShortcutFocusReason);
        click();
        return true;
    }
    return QPushButton::event(event);
}

} // namespace host
