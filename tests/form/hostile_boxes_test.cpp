// What must not validate a text, or change it: keys without effect, texts written by other programs,
// tables that change in the meantime.
#include <QTest>

#include "dialogs/common/TypingRules.h"
#include "form/BoundCustomer.h"
#include "form/BoxesTest.h"

namespace {

using ambrel::MessageAnswer;

class HostileBoxes : public postal_tests::BoxesTest {
protected:
    void showStored(const QString& municipality, const QString& province, const QString& type = {},
                    const QString& street = {}, const QString& number = {}, const QString& postalCode = {}) {
        box(Box::Municipality).setText(municipality);
        box(Box::Province).setText(province);
        box(Box::StreetType).setText(type);
        box(Box::Street).setText(street);
        box(Box::Number).setText(number);
        box(Box::PostalCode).setText(postalCode);
        address->takeStored();
    }
};

TEST_F(HostileBoxes, AKeyThatChangesNothingLooksNothingUp) {
    new ambrel::TypingRules(boxes.municipality, 6, ambrel::Capitals::Yes); // as long as MIERES
    open();
    showStored("MIERES", "ASTURIAS");
    enter(Box::Municipality);
    press(Qt::Key_End);
    type("S");
    EXPECT_EQ(text(Box::Municipality), "MIERES");
    EXPECT_EQ(tag(Box::Municipality), 33037);
}

TEST_F(HostileBoxes, AReadOnlyBoxIsNotCompleted) {
    open();
    showStored("HAR", "");
    boxes.municipality->setReadOnly(true);
    enter(Box::Municipality);
    type("A");
    EXPECT_EQ(text(Box::Municipality), "HAR");
    EXPECT_EQ(state(Box::Municipality), State::NotValidated);
}

TEST_F(HostileBoxes, ANameThatSeveralHaveIsNotValidatedWhileItIsTyped) {
    open();
    enter(Box::Municipality);
    type("MIERES");
    EXPECT_EQ(state(Box::Municipality), State::NotValidated);
    expectMunicipalityQuestion(MessageAnswer::No);
    press(Qt::Key_Tab);
    EXPECT_EQ(state(Box::Municipality), State::NotValidated);
}

TEST_F(HostileBoxes, ATextThatTheProgramPutsIntoABoxIsNotValidated) {
    open();
    fillAddress("MADRID", "CL", "ALCALA", "100");
    ASSERT_EQ(state(Box::PostalCode), State::Validated);
    box(Box::Municipality).setText("HARO"); // as a completer or a screen reader does
    EXPECT_EQ(state(Box::Municipality), State::NotValidated);
    EXPECT_EQ(state(Box::PostalCode), State::NotValidated);
    enter(Box::Municipality);
    press(Qt::Key_Tab);
    EXPECT_EQ(tag(Box::Municipality), 26071);
    EXPECT_EQ(text(Box::PostalCode), "26200");
}

TEST_F(HostileBoxes, AnotherTypeLeavesNoCodeValidated) {
    open();
    fillAddress("MADRID", "CL", "MAYOR", "5");
    ASSERT_EQ(text(Box::PostalCode), "28013");
    enter(Box::StreetType);
    type("PZ");
    EXPECT_EQ(state(Box::PostalCode), State::NotValidated);
    press(Qt::Key_Tab);
    EXPECT_EQ(text(Box::PostalCode), "28012");
    EXPECT_EQ(state(Box::PostalCode), State::Validated);
}

TEST_F(HostileBoxes, ACodeWithBlanksBeforeItIsNoneUntilTheyAreGone) {
    open();
    fill(Box::Municipality, "HARO");
    enter(Box::PostalCode);
    box(Box::PostalCode).clear();
    box(Box::PostalCode).insert(" 26200");
    EXPECT_EQ(state(Box::PostalCode), State::NotValidated); // a column of five holds " 2620"
    press(Qt::Key_Tab);
    EXPECT_EQ(text(Box::PostalCode), "26200");
    EXPECT_EQ(state(Box::PostalCode), State::Validated);
    paste(Box::Number, "      12 ");
    EXPECT_EQ(text(Box::Number), "12");
}

TEST_F(HostileBoxes, ANumberIsLookedUpInTheStreetAsItIsNow) {
    open();
    fillAddress("MADRID", "CL", "MAYOR", "5");
    ASSERT_EQ(text(Box::PostalCode), "28013");
    dbase::Dataset others("DB", "POSTAL", "CODIGO1");
    others.open();
    ASSERT_TRUE(others.seek({{"CODIGO1", "28000003"}}, dbase::SeekMode::Exact));
    others.edit();
    others.field("CODPOSTAL").setText("28001");
    others.post();
    fill(Box::Number, "7");
    EXPECT_EQ(text(Box::PostalCode), "28001");
    others.erase();
    fill(Box::Number, "9");
    EXPECT_EQ(state(Box::StreetType), State::NotValidated) << "there is only PZ MAYOR now";
    EXPECT_EQ(state(Box::PostalCode), State::NotValidated);
    EXPECT_EQ(address->reason(Box::PostalCode), QStringLiteral("La vía está en las tablas como «PZ MAYOR»."));
}

TEST_F(HostileBoxes, AMunicipalityThatIsGoneIsNotValidated) {
    open();
    fill(Box::Municipality, "HARO");
    dbase::Dataset others("DB", "MUNICIPI", "COD_INE");
    others.open();
    ASSERT_TRUE(others.seek({{"COD_INE", "26071"}}, dbase::SeekMode::Exact));
    others.erase();
    fill(Box::Street, "MAYOR");
    EXPECT_EQ(state(Box::Municipality), State::NotValidated);
    EXPECT_EQ(tag(Box::Municipality), 0);
    EXPECT_EQ(state(Box::PostalCode), State::NotValidated);
}

TEST_F(HostileBoxes, ACodeTypedForOneTownIsNotGivenToAStreetOfTheNext) {
    open();
    fill(Box::Municipality, "MADRID");
    fill(Box::PostalCode, "28013");
    fill(Box::Municipality, "ALTA");
    expectInsertion(MessageAnswer::Yes);
    dialogs.expect("TFFichaVia", [](QDialog& card) {
        EXPECT_NE(ambrel::test::child<QLineEdit>(card, "DBECodPostal").text(), "28013");
        QTest::mouseClick(&ambrel::test::child<QWidget>(card, "BBCancelar"), Qt::LeftButton);
    });
    messages.expect(QStringLiteral("¿Desea cancelar esta operación (S/N)?"),
                    QStringLiteral("Esta modificando los datos de una via"), QStringLiteral("Atención"),
                    MessageAnswer::Yes);
    fill(Box::Street, "NUEVA");
}

TEST_F(HostileBoxes, ARowThatOthersHoldShowsItsOwnAddressAfterAChoice) {
    storeCustomer("NINGUNO");
    postal_tests::BoundCustomer customer(boxes);
    open();
    customer.showIn(*address);
    customer.hold();
    dialogs.expect("TFBuscarMunicipios", [](QDialog& list) {
        QTest::mouseClick(&ambrel::test::child<QWidget>(list, "BBAceptar"), Qt::LeftButton);
    });
    const auto boxesShown = ambrel::test::boxesDuring([&] { address->openList(Box::Municipality); });
    EXPECT_EQ(boxesShown.size(), 1U);
    EXPECT_EQ(text(Box::Municipality), "NINGUNO");
    EXPECT_EQ(tag(Box::Municipality), 0);
    EXPECT_EQ(state(Box::Municipality), State::NotValidated);
    EXPECT_EQ(text(Box::Province), "");
    customer.release();
}

} // namespace
