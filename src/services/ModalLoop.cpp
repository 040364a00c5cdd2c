// Modal dialogs and the keyboard focus of windows.
#include "services/ModalLoop.h"

#include <QApplication>
#include <QDialog>
#include <QPointer>

namespace ambrel {

int execModal(QDialog& dialog) {
    QPointer<QWidget> before = QApplication::activeWindow();
    if (!before) {
        before = dialog.parentWidget();
    }
    const int result = dialog.exec();
    // Not in another program, where the user may have gone meanwhile.
    if (before && before->isVisible() && QGuiApplication::applicationState() == Qt::ApplicationActive) {
        before->activateWindow();
    }
    return result;
}

} // namespace ambrel
