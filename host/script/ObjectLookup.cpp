// Finds objects by the names that scripts use.
#include "host/script/ObjectLookup.h"

#include <QApplication>
#include <QWidget>

namespace host::script {
namespace {

QObject* findIn(QWidget* window, const QString& name) {
    if (!window) {
        return nullptr;
    }
    if (window->objectName() == name) {
        return window;
    }
    const auto found = window->findChildren<QObject*>(name);
    for (QObject* object : found) {
        if (const auto* widget = qobject_cast<QWidget*>(object); widget && widget->isVisible()) {
            return object;
        }
    }
    return found.isEmpty() ? nullptr : found.front();
}

} // namespace

QObject* ObjectLookup::find(const QString& name) const {
    for (QWidget* const window : {QApplication::activeModalWidget(), QApplication::activeWindow()}) {
        if (QObject* const found = findIn(window, name)) {
            return found;
        }
    }
    return findIn(mainWindow_, name);
}

QWidget* ObjectLookup::activeWindow() const {
    if (QWidget* modal = QApplication::activeModalWidget()) {
        return modal;
    }
    if (QWidget* active = QApplication::activeWindow()) {
        return active;
    }
    return mainWindow_;
}

QString reasonNotFound(const QString& name) { return QStringLiteral("no hay ningún objeto «%1»").arg(name); }

QString reasonNotReachable(const QWidget& widget) {
    if (!widget.isVisible()) {
        return QStringLiteral("«%1» no está a la vista").arg(widget.objectName());
    }
    if (!widget.isEnabled()) {
        return QStringLiteral("«%1» está inactivo").arg(widget.objectName());
    }
    const QWidget* modal = QApplication::activeModalWidget();
    if (modal && modal != widget.window() && !modal->isAncestorOf(&widget)) {
        return QStringLiteral("«%1» queda detrás de la ventana «%2»")
            .arg(widget.objectName(), modal->windowTitle());
    }
    return {};
}

} // namespace host::script
