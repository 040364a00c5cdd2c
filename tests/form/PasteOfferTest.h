// Test fixture: an address wired into whose boxes whole addresses are pasted.
#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QFrame>
#include <QLabel>
#include <QTest>
#include <string>

#include "form/BoxesTest.h"

namespace postal_tests {

class PasteOfferTest : public BoxesTest {
protected:
    PasteOfferTest() {
        addStreets({{"28000010", "GRAN VIA", "CL", "28013"}});
        boxes.rest = rest;
    }

    /// The strip that the user sees; null if there is none.
    [[nodiscard]] static QFrame* strip() {
        for (QWidget* const window : QApplication::topLevelWidgets()) {
            if (window->isVisible() && window->objectName() == "FOferta") {
                return qobject_cast<QFrame*>(window);
            }
        }
        return nullptr;
    }
    [[nodiscard]] static bool offerCame() {
        return QTest::qWaitFor([] { return strip() != nullptr; });
    }
    [[nodiscard]] static bool noOfferComes() {
        QTest::qWait(50);
        return strip() == nullptr;
    }
    /// What the strip says.
    [[nodiscard]] static std::string said() {
        QStringList texts;
        if (const QFrame* const shown = strip()) {
            for (const QLabel* const label : shown->findChildren<QLabel*>()) {
                texts << label->text();
            }
        }
        return texts.join('|').toStdString();
    }
    [[nodiscard]] static bool says(const std::string& texts, const char* part) {
        return texts.find(part) != std::string::npos;
    }
    /// Pastes with the keyboard over the text of a box, which keeps the focus.
    void pasteInto(Box which, const QString& text) {
        enter(which);
        box(which).selectAll();
        QGuiApplication::clipboard()->setText(text);
        press(Qt::Key_V, Qt::ControlModifier);
        QApplication::processEvents();
    }
    void expectAlcala() {
        EXPECT_EQ(text(Box::Municipality), "MADRID");
        EXPECT_EQ(text(Box::Province), "MADRID");
        EXPECT_EQ(text(Box::StreetType), "CL");
        EXPECT_EQ(text(Box::Street), "ALCALA");
        EXPECT_EQ(text(Box::Number), "100");
        EXPECT_EQ(text(Box::PostalCode), "28014");
        EXPECT_EQ(tag(Box::Municipality), 28079);
        EXPECT_EQ(tag(Box::Street), 28000001);
        for (const Box which :
             {Box::Municipality, Box::Province, Box::StreetType, Box::Street, Box::Number, Box::PostalCode}) {
            EXPECT_EQ(state(which), State::Validated) << text(which).toStdString();
        }
    }

    QLineEdit* const rest = new QLineEdit(&form);
};

} // namespace postal_tests
