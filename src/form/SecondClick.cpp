// Waits for the second click of a double click.
#include "form/SecondClick.h"

#include <QApplication>
#include <QMouseEvent>
#include <QTimer>

namespace ambrel {

SecondClick::SecondClick(QPoint place) : QObject(qApp), place_(place) {
    qApp->installEventFilter(this);
    QTimer::singleShot(QApplication::doubleClickInterval(), this, [this] {
        if (!isDown_) {
            deleteLater();
        }
    });
}

bool SecondClick::eventFilter(QObject* watched, QEvent* event) {
    if (!watched->isWindowType()) {
        return false;
    }
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick: {
        const QPoint pressed = static_cast<QMouseEvent*>(event)->globalPosition().toPoint();
        isDown_ = isDown_ || (pressed - place_).manhattanLength() < QApplication::startDragDistance();
        return isDown_;
    }
    case QEvent::MouseButtonRelease:
        if (!isDown_) {
            return false;
        }
        deleteLater();
        qApp->removeEventFilter(this);
        return true;
    default:
        return false;
    }
}

} // namespace ambrel
