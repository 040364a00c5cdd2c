// Finds the objects that a script names, and the window that the user is in.
#pragma once

#include <QString>

class QObject;
class QWidget;

namespace host::script {

class ObjectLookup {
public:
    void setMainWindow(QWidget* window) { mainWindow_ = window; }

    /// By objectName in the active window, modal or not, then in the main one; visible objects come first.
    /// Null when there is none.
    [[nodiscard]] QObject* find(const QString& name) const;

    /// The active modal window, else the active window, else the main one, which must have been set.
    [[nodiscard]] QWidget* activeWindow() const;

private:
    QWidget* mainWindow_ = nullptr;
};

/// The message that no object has this name. Spanish.
[[nodiscard]] QString reasonNotFound(const QString& name);

/// Why the user cannot reach a widget: it is hidden, disabled, or behind a modal window. Empty when he can.
/// Spanish.
[[nodiscard]] QString reasonNotReachable(const QWidget& widget);

} // namespace host::script
