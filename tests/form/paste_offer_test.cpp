// A whole address that is pasted into one box is offered for all of them.
#include <QClipboard>
#include <QFrame>
#include <QLabel>
#include <QMimeData>
#include <QPushButton>
#include <QTest>

#include "form/BoundCustomer.h"
#include "form/BoxesTest.h"
#include "form/ShownList.h"
#include "services/TagProperty.h"
#include "support/ShownWindow.h"

namespace {

using ambrel::MessageAnswer;
using postal_tests::shownList;

class PasteOffer : public postal_tests::BoxesTest {
protected:
    PasteOffer() {
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

bool says(const std::string& texts, const char* part) { return texts.find(part) != std::string::npos; }

TEST_F(PasteOffer, FillsAllBoxesWhenItIsAccepted) {
    for (const Box which : {Box::Municipality, Box::Street}) {
        open();
        pasteInto(which, "Calle de Alcalá, 100, 3º B, 28014 Madrid");
        ASSERT_TRUE(offerCame());
        EXPECT_EQ(text(which), "Calle de Alcalá, 100, 3º B, 28014 Madrid") << "nothing has changed yet";
        press(Qt::Key_Return);
        EXPECT_FALSE(strip());
        expectAlcala();
        EXPECT_EQ(rest->text(), "3º B");
        EXPECT_TRUE(box(which).hasFocus());
        press(Qt::Key_Tab); // asks nothing
        address.reset();
        for (QLineEdit* const edit : form.findChildren<QLineEdit*>()) {
            edit->clear();
        }
    }
}

TEST_F(PasteOffer, SaysWhatWouldBeWrittenAndTheVerdict) {
    open();
    pasteInto(Box::Street, "C/ Alcalá 100, 3º B, Madrid");
    ASSERT_TRUE(offerCame());
    for (const char* part : {"MADRID (MADRID)", "CL ALCALA", "100", "3º B", "28014", "Se añadió"}) {
        EXPECT_TRUE(says(said(), part)) << part << " in " << said();
    }
}

TEST_F(PasteOffer, EscapeLeavesTheTextAsItWasPasted) {
    open();
    pasteInto(Box::Street, "Calle de Alcalá, 100, 28014 Madrid");
    ASSERT_TRUE(offerCame());
    press(Qt::Key_Escape);
    EXPECT_FALSE(strip());
    EXPECT_EQ(text(Box::Street), "Calle de Alcalá, 100, 28014 Madrid");
    EXPECT_EQ(text(Box::Municipality), "");
    EXPECT_EQ(tag(Box::Street), 0);
    EXPECT_EQ(state(Box::Street), State::NotValidated);
    EXPECT_TRUE(noOfferComes());
}

TEST_F(PasteOffer, TypingLeavesIt) {
    open();
    pasteInto(Box::Street, "Calle de Alcalá, 100, 28014 Madrid");
    ASSERT_TRUE(offerCame());
    type("x");
    EXPECT_FALSE(strip());
    EXPECT_EQ(text(Box::Street), "Calle de Alcalá, 100, 28014 MadridX");
    EXPECT_EQ(text(Box::Municipality), "");
}

TEST_F(PasteOffer, GoingOnWithTabLeavesIt) {
    open();
    pasteInto(Box::Street, "Calle de Alcalá, 100, 28014 Madrid");
    ASSERT_TRUE(offerCame());
    press(Qt::Key_Tab);
    EXPECT_FALSE(strip());
    EXPECT_EQ(text(Box::Street).toUpper(), "CALLE DE ALCALÁ, 100, 28014 MADRID");
    EXPECT_EQ(text(Box::Municipality), "");
}

TEST_F(PasteOffer, ANameAloneIsPastedAsEver) {
    addStreets({{"28000030", "CAMINO DE ARANJUEZ", "CM", "28013"}});
    open();
    for (const QString& pasted :
         {QString("MADRID"), QString("Aranjuez"), QString("28014"), QString("San Martín de la Vega")}) {
        pasteInto(Box::Municipality, pasted);
        EXPECT_TRUE(noOfferComes()) << pasted.toStdString();
        EXPECT_EQ(text(Box::Municipality), pasted);
        press(Qt::Key_Escape);
    }
    fill(Box::Municipality, "mad");
    for (const QString& pasted :
         {QString("ALCALA"), QString("Gran Vía"), QString("Gran Vía 5"), QString("CAMINO DE ARANJUEZ"),
          QString("Camino de Aranjuez"), QString("Plaza Mayor")}) {
        pasteInto(Box::Street, pasted);
        EXPECT_TRUE(noOfferComes()) << pasted.toStdString() << said();
        EXPECT_EQ(text(Box::Street), pasted);
        press(Qt::Key_Escape);
    }
}

TEST_F(PasteOffer, TypedLettersAreNeverOffered) {
    open();
    fill(Box::Municipality, "mad");
    enter(Box::Street);
    type("calle de alcala 100 28014 madrid");
    EXPECT_TRUE(noOfferComes());
    press(Qt::Key_Escape);
}

TEST_F(PasteOffer, LinesAreParts) {
    open();
    pasteInto(Box::Municipality, "Calle de Alcalá 100\r\n3º B\n28014 Madrid\n");
    ASSERT_TRUE(offerCame());
    press(Qt::Key_Return);
    expectAlcala();
    EXPECT_EQ(rest->text(), "3º B");
}

TEST_F(PasteOffer, ASlipIsCorrectedAndSaid) {
    open();
    pasteInto(Box::Street, "Calle Arcala 100, 28014 Madrid");
    ASSERT_TRUE(offerCame());
    if (says(said(), "Se corrigió")) {
        press(Qt::Key_Return);
        expectAlcala();
    } else { // too short a word to be corrected alone
        EXPECT_TRUE(says(said(), "sin validar")) << said();
        press(Qt::Key_Return);
        EXPECT_EQ(state(Box::Street), State::NotValidated);
        EXPECT_EQ(state(Box::PostalCode), State::NotValidated);
    }
}

TEST_F(PasteOffer, ACodeOfAnotherStreetIsSaidAndStaysUnvalidated) {
    open();
    pasteInto(Box::Street, "Calle de Alcalá, 100, 28013 Madrid");
    ASSERT_TRUE(offerCame());
    EXPECT_TRUE(says(said(), "El código dado es de otra calle: el de esta dirección es 28014.")) << said();
    press(Qt::Key_Return);
    EXPECT_EQ(text(Box::Street), "ALCALA");
    EXPECT_EQ(text(Box::PostalCode), "28013") << "as it was pasted";
    EXPECT_EQ(state(Box::PostalCode), State::NotValidated);
    EXPECT_EQ(address->reason(Box::PostalCode), "El código de esta dirección es 28014.");
}

TEST_F(PasteOffer, AnUnknownStreetIsFilledInUnvalidatedAndAskedAboutLater) {
    open();
    pasteInto(Box::Municipality, "Calle Inventada 7, 28014 Madrid");
    ASSERT_TRUE(offerCame());
    EXPECT_TRUE(says(said(), "sin validar")) << said();
    press(Qt::Key_Return);
    EXPECT_EQ(text(Box::Municipality), "MADRID");
    EXPECT_EQ(state(Box::Municipality), State::Validated);
    EXPECT_EQ(text(Box::Street).toUpper(), "INVENTADA");
    EXPECT_EQ(text(Box::Number), "7");
    EXPECT_EQ(state(Box::Street), State::NotValidated);
    EXPECT_EQ(address->reason(Box::Street), "El municipio no tiene esta vía en las tablas.");
    EXPECT_EQ(text(Box::PostalCode), "28014");
    EXPECT_EQ(state(Box::PostalCode), State::NotValidated);
    enter(Box::Street);
    expectStreetDeclined();
    press(Qt::Key_Tab);
}

TEST_F(PasteOffer, ANumberOutsideIsNotValidated) {
    open();
    addStreets({{"28000040", "CORTA", "CL", "28012", {1, 9}, {2, 8}}});
    pasteInto(Box::Street, "Calle Corta 95, 28012 Madrid");
    ASSERT_TRUE(offerCame());
    EXPECT_TRUE(says(said(), "Ningún tramo de la vía tiene el número 95.")) << said();
    press(Qt::Key_Return);
    EXPECT_EQ(text(Box::PostalCode), "28012");
    EXPECT_EQ(state(Box::Number), State::NotValidated);
    EXPECT_EQ(state(Box::PostalCode), State::NotValidated);
}

TEST_F(PasteOffer, NothingIsReplacedUnsaid) {
    open();
    fillAddress("haro", "", "", "");
    rest->setText("5º izda.");
    pasteInto(Box::Street, "Calle de Alcalá, 100, 28014 Madrid");
    ASSERT_TRUE(offerCame());
    EXPECT_TRUE(says(said(), "Se sustituye «HARO», «RIOJA, LA», «26200», «5º izda.».")) << said();
    press(Qt::Key_Return);
    expectAlcala();
    EXPECT_EQ(rest->text(), "") << "it was another address's";
}

TEST_F(PasteOffer, SignsThatTheTablesCannotHoldAreNotReplacedUnsaid) {
    open();
    const char* const warning = "Los signos que las tablas no guardan se pierden.";
    pasteInto(Box::Street, "Calle de Alcalá, 100, portal ★, 28014 Madrid");
    ASSERT_TRUE(offerCame());
    EXPECT_TRUE(says(said(), warning)) << said();
    press(Qt::Key_Escape);
    box(Box::Street).clear();
    pasteInto(Box::Street, "Calle de Alcalá, 100, 28014 Madrid");
    ASSERT_TRUE(offerCame());
    EXPECT_FALSE(says(said(), warning)) << said();
}

TEST_F(PasteOffer, AnAddressPastedBesideATextIsTakenWithoutIt) {
    open();
    fillAddress("haro", "", "", "");
    for (const bool isAfter : {true, false}) {
        enter(Box::Municipality);
        press(isAfter ? Qt::Key_End : Qt::Key_Home);
        QGuiApplication::clipboard()->setText("Calle de Alcalá, 100, 28014 Madrid");
        press(Qt::Key_V, Qt::ControlModifier);
        ASSERT_TRUE(offerCame());
        EXPECT_TRUE(says(said(), "Se sustituye «HARO»")) << said();
        press(Qt::Key_Return);
        expectAlcala();
        press(Qt::Key_Z, Qt::ControlModifier);
        press(Qt::Key_Z, Qt::ControlModifier);
        EXPECT_EQ(text(Box::Municipality), "HARO");
    }
}

TEST_F(PasteOffer, TheTextBesideAnAddressDoesNotEndInItsRest) {
    open();
    fillAddress("haro", "", "", "");
    enter(Box::Municipality);
    press(Qt::Key_End);
    QGuiApplication::clipboard()->setText("Cl. Alcalá 100, 28014 Madrid");
    press(Qt::Key_V, Qt::ControlModifier);
    ASSERT_TRUE(offerCame());
    EXPECT_FALSE(says(said(), "HAROCl.")) << said();
    press(Qt::Key_Return);
    expectAlcala();
    EXPECT_EQ(rest->text(), "");
}

TEST_F(PasteOffer, WhatIsPastedAfterTheStreetMakesOneAddressWithIt) {
    open();
    enter(Box::Street);
    type("calle alcala ");
    QGuiApplication::clipboard()->setText("100, 28014 Madrid");
    press(Qt::Key_V, Qt::ControlModifier);
    ASSERT_TRUE(offerCame());
    press(Qt::Key_Return);
    expectAlcala();
}

TEST_F(PasteOffer, UndoGivesEverythingBackAndRedoFillsAgain) {
    open();
    fillAddress("haro", "", "", "");
    rest->setText("5º izda.");
    pasteInto(Box::Street, "Calle de Alcalá, 100, 3º B, 28014 Madrid");
    ASSERT_TRUE(offerCame());
    press(Qt::Key_Return);
    expectAlcala();
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(text(Box::Street), "Calle de Alcalá, 100, 3º B, 28014 Madrid");
    EXPECT_EQ(text(Box::Municipality), "HARO");
    EXPECT_EQ(tag(Box::Municipality), 26071);
    EXPECT_EQ(state(Box::Municipality), State::Validated);
    EXPECT_EQ(text(Box::Province), "RIOJA, LA");
    EXPECT_EQ(text(Box::StreetType), "");
    EXPECT_EQ(text(Box::Number), "");
    EXPECT_EQ(text(Box::PostalCode), "26200");
    EXPECT_EQ(rest->text(), "5º izda.");
    EXPECT_TRUE(noOfferComes()) << "it was just taken back";
    press(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    expectAlcala();
    EXPECT_EQ(rest->text(), "3º B");
    press(Qt::Key_Z, Qt::ControlModifier);
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(text(Box::Street), "") << "before it was pasted";
}

TEST_F(PasteOffer, WithoutABoxForItTheRestFollowsTheNumber) {
    boxes.rest = nullptr;
    open();
    pasteInto(Box::Street, "Calle de Alcalá, 100, 3º B, 28014 Madrid");
    ASSERT_TRUE(offerCame());
    press(Qt::Key_Return);
    EXPECT_EQ(text(Box::Number), "100, 3º B");
    EXPECT_EQ(state(Box::Number), State::Validated);
    EXPECT_EQ(state(Box::PostalCode), State::Validated);
}

TEST_F(PasteOffer, WhatHasNoBoxIsSaid) {
    boxes.rest = nullptr;
    boxes.number = nullptr;
    open();
    pasteInto(Box::Street, "Calle Gran Vía, 100, 3º B, 28013 Madrid");
    ASSERT_TRUE(offerCame());
    EXPECT_TRUE(says(said(), "No hay casilla para «100», «3º B».")) << said();
    press(Qt::Key_Return);
    EXPECT_EQ(text(Box::Street), "GRAN VIA");
    EXPECT_EQ(text(Box::PostalCode), "28013");
}

TEST_F(PasteOffer, ComesFromMenuMiddleButtonAndDrop) {
    open();
    const QString pasted = "Calle de Alcalá, 100, 28014 Madrid";
    QGuiApplication::clipboard()->setText(pasted);
    enter(Box::Street);
    box(Box::Street).paste(); // what the menu does
    ASSERT_TRUE(offerCame());
    press(Qt::Key_Escape);
    box(Box::Street).clear();
    enter(Box::Municipality);
    QMimeData data;
    data.setText(pasted);
    QDragEnterEvent drag(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&box(Box::Street), &drag);
    QDropEvent drop(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&box(Box::Street), &drop);
    ASSERT_EQ(text(Box::Street), pasted);
    ASSERT_TRUE(offerCame());
    EXPECT_TRUE(box(Box::Street).hasFocus());
    press(Qt::Key_Return);
    expectAlcala();
    if (QGuiApplication::clipboard()->supportsSelection()) {
        QGuiApplication::clipboard()->setText(pasted, QClipboard::Selection);
        box(Box::Municipality).clear();
        QTest::mouseClick(&box(Box::Municipality), Qt::MiddleButton);
        EXPECT_TRUE(offerCame());
    }
}

TEST_F(PasteOffer, ItsButtonsAcceptAndLeave) {
    open();
    const QString pasted = "Calle de Alcalá, 100, 28014 Madrid";
    pasteInto(Box::Street, pasted);
    ASSERT_TRUE(offerCame());
    QTest::mouseClick(strip()->findChild<QPushButton*>("BBDejar"), Qt::LeftButton);
    EXPECT_FALSE(strip());
    EXPECT_EQ(text(Box::Street), pasted);
    pasteInto(Box::Street, pasted + " ");
    ASSERT_TRUE(offerCame());
    QTest::mouseClick(strip()->findChild<QPushButton*>("BBRellenar"), Qt::LeftButton);
    EXPECT_FALSE(strip());
    expectAlcala();
    EXPECT_TRUE(box(Box::Street).hasFocus());
}

TEST_F(PasteOffer, NoListOfSuggestionsOpensOverIt) {
    open();
    fill(Box::Municipality, "mad");
    pasteInto(Box::Street, "Calle de Alcalá, 100, 28014 Madrid");
    ASSERT_TRUE(offerCame());
    QTest::qWait(250); // a list waits a moment after a paste
    EXPECT_FALSE(shownList());
    EXPECT_TRUE(strip());
    press(Qt::Key_Escape);
}

TEST_F(PasteOffer, IsAnnouncedToScreenReaders) {
    open();
    box(Box::Street).setAccessibleDescription("Nombre de la vía");
    pasteInto(Box::Street, "Calle de Alcalá, 100, 28014 Madrid");
    ASSERT_TRUE(offerCame());
    const std::string description = box(Box::Street).accessibleDescription().toStdString();
    for (const char* part : {"Intro rellena las casillas", "CL ALCALA", "28014", "Nombre de la vía"}) {
        EXPECT_TRUE(says(description, part)) << description;
    }
    press(Qt::Key_Escape);
    EXPECT_EQ(box(Box::Street).accessibleDescription(), "Nombre de la vía");
}

TEST_F(PasteOffer, StaysWhenTheWindowGrowsForWhatWasPasted) {
    open();
    pasteInto(Box::Street, "C/ Alcalá 100, Madrid");
    ASSERT_TRUE(offerCame());
    form.resize(form.size() + QSize(0, 20));
    QApplication::processEvents();
    EXPECT_TRUE(strip());
}

TEST_F(PasteOffer, CanBeSwitchedOff) {
    open();
    address->setPasteOffers(false);
    pasteInto(Box::Street, "Calle de Alcalá, 100, 28014 Madrid");
    EXPECT_TRUE(noOfferComes());
}

TEST_F(PasteOffer, TellsTheHostThatItWasTaken) {
    open();
    int taken = 0;
    QObject::connect(address.get(), &ambrel::AddressBoxes::addressTaken, address.get(), [&] { ++taken; });
    pasteInto(Box::Street, "Calle de Alcalá, 100, 28014 Madrid");
    ASSERT_TRUE(offerCame());
    press(Qt::Key_Escape);
    EXPECT_EQ(taken, 0);
    pasteInto(Box::Street, "Calle de Alcalá, 100, 28014 Madrid.");
    ASSERT_TRUE(offerCame());
    press(Qt::Key_Return);
    EXPECT_EQ(taken, 1);
}

TEST_F(PasteOffer, ARowThatOthersHoldStaysAsItIs) {
    storeCustomer("HARO");
    postal_tests::BoundCustomer customer(boxes);
    open();
    customer.showIn(*address);
    customer.hold();
    const auto boxesShown = ambrel::test::boxesDuring(
        [&] { pasteInto(Box::Municipality, "Calle de Alcalá, 100, 28014 Madrid"); });
    EXPECT_EQ(boxesShown.size(), 1U);
    EXPECT_EQ(text(Box::Municipality), "HARO");
    EXPECT_TRUE(noOfferComes());
    customer.release();
    pasteInto(Box::Municipality, "Calle de Alcalá, 100, 28014 Madrid");
    ASSERT_TRUE(offerCame());
    press(Qt::Key_Return);
    EXPECT_EQ(customer.municipality(), "MADRID");
    expectAlcala();
}

TEST_F(PasteOffer, LineBreaksDoNotReachTheRow) {
    storeCustomer("");
    postal_tests::BoundCustomer customer(boxes);
    open();
    customer.showIn(*address);
    pasteInto(Box::Municipality, "Ana Gil\nCalle\tInventada\r\n5");
    EXPECT_EQ(customer.municipality(), "Ana Gil Calle Inventada  5");
    box(Box::Municipality).clear();
}

TEST_F(PasteOffer, AReadOnlyBoxOffersNothing) {
    open();
    box(Box::Street).setReadOnly(true);
    pasteInto(Box::Street, "Calle de Alcalá, 100, 28014 Madrid");
    EXPECT_TRUE(noOfferComes());
    EXPECT_EQ(text(Box::Street), "");
}

TEST_F(PasteOffer, AnotherStoredAddressClosesIt) {
    open();
    pasteInto(Box::Street, "Calle de Alcalá, 100, 28014 Madrid");
    ASSERT_TRUE(offerCame());
    address->takeStored();
    EXPECT_FALSE(strip());
}

} // namespace
