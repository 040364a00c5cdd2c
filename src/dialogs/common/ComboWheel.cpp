// Keeps the mouse wheel from changing combos without the focus.
#include "dialogs/common/ComboWheel.h"

#include <QComboBox>
#include <QEvent>

namespace ambrel {

ComboWheel::ComboWheel(QComboBox* combo) : QObject(combo), combo_(combo) {
    if (combo->focusPolicy() == Qt::WheelFocus) {
        combo->setFocusPolicy(Qt::StrongFocus);
    }
    combo->installEventFilter(this);
}

bool ComboWheel::eventFilter(QObject*, QEvent* event) {
    if (event->type() != QEvent::Wheel || combo_->hasFocus()) {
        return false;
    }
    event->ignore(); // the area around the combo may scroll
    return true;
}

} // namespace ambrel
