// A whole address that is pasted into one box is offered for all of them: what is offered, said and filled
// in.
#include <QClipboard>

#include "form/PasteOfferTest.h"

namespace {

using PasteOffer = postal_tests::PasteOfferTest;

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
    EXPECT_TRUE(says(said(), "Se corrigió")) << said();
    press(Qt::Key_Return);
    expectAlcala();
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

} // namespace
