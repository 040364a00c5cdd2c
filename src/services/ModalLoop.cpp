// Modal dialogs and the keyboard focus of windows.
#include "services/ModalLoop.h"

#include <QApplication>
#include <QDialog>
#include <QPointer>

#include "dbase/lock/read_scope.h"

namespace ambrel {

int execModal(QDialog& dialog) {
    QPointer<QWidget> before = QApplication::activeWindow();
    if (!before) {
        before = dialog.parentWidget();
    }
    dbase::ReadScope::letGo(); // nobody waits for the user's answer
    const int result = dialog.exec();
    // Not if the user has gone to another program meanwhile.
    if (before && before->isVisible() && QGuiApplication::applicationState() == Qt::ApplicationActive) {
        before->activateWindow();
    }
    return result;
}

} // namespace ambrel
