// The trial of the example where there is no screen; a host needs nothing of it.
#pragma once

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <cstdio>

/// Presses and releases a key as a user would: whoever has the focus gets it.
inline void pressKey(int key, const QString& character) {
    for (const QEvent::Type step : {QEvent::KeyPress, QEvent::KeyRelease}) {
        QKeyEvent event(step, key, Qt::NoModifier, character);
        if (QWidget* focused = QApplication::focusWidget())
            QApplication::sendEvent(focused, &event);
    }
    QApplication::processEvents();
}

/// Types an address into the boxes of the form and prints what has become of it; 0 when it was completed.
inline int typeAnAddress(QWidget& form) {
    form.activateWindow();
    QApplication::processEvents();
    for (const char* text : {"MADRID", "ALCALA", "100"}) {
        for (const QChar character : QString(text))
            pressKey(character.unicode(), character);
        pressKey(Qt::Key_Tab, {});
    }
    const auto boxes = form.findChildren<QLineEdit*>(); // municipality, street, number and postal code
    const QString address =
        boxes[1]->text() + ", " + boxes[2]->text() + " - " + boxes[3]->text() + ' ' + boxes[0]->text();
    std::printf("%s\n", qUtf8Printable(address));
    return address == "ALCALA, 100 - 28009 MADRID" ? 0 : 1;
}
