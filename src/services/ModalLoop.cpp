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
    // Not if the user has gone to another program meanwhile.
    if (before && before->isVisible() && QGuiApplication::applicationState() == Qt::ApplicationActive) {
        before->activateWindow();
    }
    return result;
}

} // namespace ambrel
