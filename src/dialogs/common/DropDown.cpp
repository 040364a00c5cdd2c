// Chooses the kind of list that drops down.
#include "dialogs/common/DropDown.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QEvent>

namespace ambrel {

void limitDropDowns(QWidget& dialog) {
    for (QComboBox* const combo : dialog.findChildren<QComboBox*>()) {
        combo->setStyleSheet(QStringLiteral("QComboBox { combobox-popup: 0; }"));
        // If the application has a style sheet of its own, a combo is not notified of its new one.
        combo->ensurePolished();
        QEvent changed(QEvent::StyleChange);
        QCoreApplication::sendEvent(combo, &changed);
        combo->view()->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    }
}

} // namespace ambrel
