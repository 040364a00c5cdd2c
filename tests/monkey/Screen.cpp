// Looks at the windows.
#include "monkey/Screen.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLabel>
#include <QStringList>
#include <QWidget>

namespace monkey {

QWidget* foremost() {
    QWidget* const popup = QApplication::activePopupWidget();
    return popup != nullptr ? popup : QApplication::activeModalWidget();
}

QString screenText() {
    QStringList windows;
    for (const QWidget* const window : QApplication::topLevelWidgets()) {
        if (!window->isVisible()) {
            continue;
        }
        QString text = QStringLiteral("%1 «%2» «%3»")
                           .arg(QLatin1String(window->metaObject()->className()), window->objectName(),
                                window->windowTitle());
        if (window == foremost()) {
            text += QStringLiteral(" (foremost)");
        }
        if (window->isModal()) {
            for (const QLabel* const label : window->findChildren<QLabel*>()) {
                text += QStringLiteral(" / %1").arg(label->text().left(200));
            }
        }
        windows << text;
    }
    return windows.join(QStringLiteral("; "));
}

QList<QWidget*> controlsOf(const QWidget& window) {
    QList<QWidget*> controls;
    for (QWidget* const widget : window.findChildren<QWidget*>()) {
        const bool isControl =
            widget->focusPolicy() != Qt::NoFocus || qobject_cast<QAbstractButton*>(widget) != nullptr;
        if (isControl && widget->isVisible() && widget->isEnabled() && widget->window() == &window) {
            controls << widget;
        }
    }
    return controls;
}

} // namespace monkey
