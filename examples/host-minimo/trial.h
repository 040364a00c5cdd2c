// Tries the example where there is no screen; a host needs none of this.
#pragma once

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <cstdio>

#include "form/AddressBoxes.h"

/// Presses and releases a key as a user would: the focused widget gets it.
inline void pressKey(int key, const QString& character) {
    for (const QEvent::Type step : {QEvent::KeyPress, QEvent::KeyRelease}) {
        QKeyEvent event(step, key, Qt::NoModifier, character);
        if (QWidget* focused = QApplication::focusWidget()) {
            QApplication::sendEvent(focused, &event);
        }
    }
    QApplication::processEvents();
}

/// Types an address into the boxes and prints the result; 0 when it was completed.
inline int typeAnAddress(const ambrel::AddressBoxes::Boxes& boxes) {
    boxes.municipality->activateWindow();
    QApplication::processEvents();
    for (const auto& [box, text] :
         {std::pair{boxes.municipality, "MADRID"}, {boxes.street, "ALCALA"}, {boxes.number, "100"}}) {
        box->setFocus();
        for (const QChar character : QString(text)) {
            pressKey(character.unicode(), character);
        }
        pressKey(Qt::Key_Tab, {});
    }
    const QString address = boxes.street->text() + ", " + boxes.number->text() + " - " +
                            boxes.postalCode->text() + ' ' + boxes.municipality->text();
    std::printf("%s\n", qUtf8Printable(address));
    return address == "ALCALA, 100 - 28009 MADRID" ? 0 : 1;
}
