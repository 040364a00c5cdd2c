// The strip that offers a pasted address: when it comes, stays and goes, and what it does to the boxes
// meanwhile.
#include <QClipboard>
#include <QMimeData>
#include <QPushButton>
#include <QTest>

#include "form/BoundCustomer.h"
#include "form/PasteOfferTest.h"
#include "form/ShownList.h"
#include "support/ShownWindow.h"

namespace {

using PasteOffer = postal_tests::PasteOfferTest;
using postal_tests::shownList;

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

TEST_F(PasteOffer, NotifiesTheHostThatItWasTaken) {
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
