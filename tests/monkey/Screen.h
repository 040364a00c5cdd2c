// What the user sees and can reach.
#pragma once

#include <QList>
#include <QString>

class QWidget;

namespace monkey {

/// The open menu or list, else the modal window; null if there is neither.
[[nodiscard]] QWidget* foremost();

/// Every visible window, with the texts of message boxes.
[[nodiscard]] QString screenText();

/// The visible and enabled controls inside a window.
[[nodiscard]] QList<QWidget*> controlsOf(const QWidget& window);

} // namespace monkey
