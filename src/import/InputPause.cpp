// Discards the input of a waiting user.
#include "import/InputPause.h"

#include <QApplication>
#include <QCoreApplication>
#include <QEventLoop>
#include <QWindow>

#include "dbase/lock/read_scope.h"

namespace ambrel {
namespace {

bool isInput(const QEvent& event) {
    switch (event.type()) {
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::Shortcut:
    case QEvent::ShortcutOverride:
    case QEvent::InputMethod:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::NonClientAreaMouseButtonPress:
    case QEvent::Wheel:
    case QEvent::ContextMenu:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::TouchCancel:
    case QEvent::TabletPress:
    case QEvent::TabletMove:
    case QEvent::TabletRelease:
    case QEvent::NativeGesture:
    case QEvent::DragEnter:
    case QEvent::DragMove:
    case QEvent::Drop:
        return true;
    case QEvent::Close:
        return event.spontaneous();
    default:
        return false;
    }
}

} // namespace

InputPause::InputPause()
    : modal_(QApplication::activeModalWidget()), isHeld_(QGuiApplication::mouseButtons() != Qt::NoButton) {
    qApp->installEventFilter(this);
}

InputPause::~InputPause() {
    letDraw(); // discards the input still queued
    qApp->removeEventFilter(this);
    if (releasedIn_) {
        QCoreApplication::postEvent(releasedIn_, release_.release());
    }
}

void InputPause::letDraw() const {
    dbase::ReadScope::letGo();
    QCoreApplication::processEvents(QEventLoop::ExcludeSocketNotifiers | QEventLoop::X11ExcludeTimers);
}

bool InputPause::eventFilter(QObject* watched, QEvent* event) {
    if (!isInput(*event) || QApplication::activeModalWidget() != modal_) {
        return false;
    }
    if (event->type() == QEvent::MouseButtonRelease) {
        keepRelease(*watched, *event);
    }
    event->ignore();
    return true;
}

/// Without its release, the button of the dialog that started the wait would stay down for ever.
void InputPause::keepRelease(QObject& window, const QEvent& event) {
    if (!isHeld_ || !window.isWindowType()) {
        return;
    }
    isHeld_ = false;
    releasedIn_ = &window;
    release_.reset(event.clone());
}

} // namespace ambrel
