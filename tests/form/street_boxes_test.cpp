// Street, type, number and postal code: only the municipality's own streets, and new ones.
#include <QTest>

#include "controller/ClasCodPostales.h"
#include "data/CodPostalesDM.h"
#include "form/BoxesTest.h"

namespace {

using ambrel::MessageAnswer;
using ambrel::test::ansi;
using ambrel::test::child;

class StreetBoxes : public postal_tests::BoxesTest {
protected:
    static void accept(QDialog& card) {
        QTest::mouseClick(&child<QPushButton>(card, "BBAceptar"), Qt::LeftButton);
    }
    /// The newest row of POSTAL that users added; "" when there is none.
    [[nodiscard]] static std::string addedStreet() {
        dbase::Dataset streets("DB", "POSTAL", "CODIGO1");
        streets.open();
        streets.last();
        return streets.field("CODIGO1").text().starts_with("99") ? streets.field("VIA").text()
                                                                 : std::string();
    }
};

TEST_F(StreetBoxes, AStreetOfAnotherProvinceIsNeverTaken) {
    open();
    fill(Box::Municipality, "albacete");
    expectStreetDeclined();
    fill(Box::Street, "agr");
    EXPECT_EQ(text(Box::Street), "AGR");
    EXPECT_EQ(state(Box::Street), State::NotValidated);
    EXPECT_EQ(text(Box::PostalCode), "");
}

TEST_F(StreetBoxes, TheCodeOfATownWithOneIsNotOverwrittenByAStreetElsewhere) {
    open();
    fill(Box::Municipality, "aranjuez");
    expectStreetDeclined();
    fill(Box::Street, "a");
    EXPECT_EQ(text(Box::Street), "A");
    EXPECT_EQ(text(Box::PostalCode), "28300");
}

TEST_F(StreetBoxes, AmongRowsOfEqualNameTheMunicipalitysOwnIsTaken) {
    open();
    fillAddress("alta", "CL", "may", "5");
    EXPECT_EQ(tag(Box::Street), 26000002);
    EXPECT_EQ(text(Box::PostalCode), "26501");
    fill(Box::Number, "150");
    EXPECT_EQ(text(Box::PostalCode), "26500");
    EXPECT_EQ(state(Box::PostalCode), State::Validated);
    fillAddress("baja", "CL", "may", "5");
    EXPECT_EQ(text(Box::PostalCode), "26510");
}

TEST_F(StreetBoxes, TheTagIsTheMunicipalitysOwnStreetEvenWhereANeighbourSharesItsCode) {
    addMunicipalities({{"26003", "26500", "CERCA"}});
    addStreets({{"26000010", "IGLESIA", "CL", "26500", {1, 9999}, {2, 9998}, "26", "9", "26003"},
                {"26000011", "IGLESIA", "CL", "26500", {1, 9999}, {2, 9998}, "26", "9", "26001"}});
    open();
    fill(Box::Municipality, "alta");
    enter(Box::Street);
    type("igl");
    EXPECT_EQ(tag(Box::Street), 26000011) << "while it is typed";
    press(Qt::Key_Tab);
    EXPECT_EQ(tag(Box::Street), 26000011);
    EXPECT_EQ(address->controller().DM->tbPostalCODIGO1.text(), "26000011");
    fill(Box::Municipality, "cerca");
    fill(Box::Street, "igl");
    EXPECT_EQ(tag(Box::Street), 26000010);
}

TEST_F(StreetBoxes, TheControllerStandsOnTheStretchOfTheAddress) {
    open();
    fillAddress("alta", "CL", "may", "150");
    EXPECT_EQ(address->controller().DM->tbPostalCODIGO1.text(), "26000003");
    EXPECT_EQ(address->controller().DM->tbMunicipiCOD_INE.text(), "26001");
}

TEST_F(StreetBoxes, TheKeyOneIsAStreetLikeAnyOther) {
    open();
    fillAddress("alta", "CL", "prim", "5");
    EXPECT_EQ(tag(Box::Street), 1);
    EXPECT_EQ(text(Box::Street), "PRIMERA");
    EXPECT_EQ(text(Box::PostalCode), "26500");
    EXPECT_EQ(state(Box::PostalCode), State::Validated);
}

TEST_F(StreetBoxes, AStreetWithTheKeyOneCanBeChosenFromTheList) {
    open();
    fill(Box::Municipality, "alta");
    expectInsertion(MessageAnswer::No);
    expectStreetList(MessageAnswer::Yes);
    dialogs.expect("TFBuscarDireccionPostal", [](QDialog& list) {
        auto& name = child<QLineEdit>(list, "EVia");
        name.setFocus();
        name.selectAll();
        QTest::keyClicks(&name, "PRIM");
        accept(list);
    });
    fill(Box::Street, "ninguna");
    EXPECT_EQ(text(Box::Street), "PRIMERA");
    EXPECT_EQ(tag(Box::Street), 1);
    EXPECT_EQ(tag(Box::Municipality), 26001);
}

TEST_F(StreetBoxes, AMnemonicAndTabChangeNothing) {
    open();
    fillAddress("mad", "CL", "alcala", "300");
    ASSERT_EQ(text(Box::PostalCode), "28027");
    enter(Box::Street);
    press(Qt::Key_V, Qt::AltModifier);
    press(Qt::Key_Tab);
    EXPECT_EQ(text(Box::PostalCode), "28027");
    EXPECT_EQ(state(Box::PostalCode), State::Validated);
}

TEST_F(StreetBoxes, TheTypeTellsStreetsOfOneNameApart) {
    open();
    fillAddress("mad", "PZ", "mayor", "5");
    EXPECT_EQ(text(Box::PostalCode), "28012");
    fill(Box::StreetType, "CL");
    EXPECT_EQ(text(Box::PostalCode), "28013");
    EXPECT_EQ(state(Box::PostalCode), State::Validated);
}

TEST_F(StreetBoxes, AStreetThatIsThereUnderAnotherTypeSaysSo) {
    open();
    fillAddress("mad", "AV", "alcala", "5");
    EXPECT_EQ(state(Box::StreetType), State::NotValidated);
    EXPECT_TRUE(address->reason(Box::StreetType).contains("CL ALCALA"));
}

TEST_F(StreetBoxes, AStreetTypeIsValidatedByItself) {
    open();
    fill(Box::StreetType, "cl");
    EXPECT_EQ(state(Box::StreetType), State::Validated);
    EXPECT_EQ(tag(Box::StreetType), 1);
}

TEST_F(StreetBoxes, ATypesNameTypedInFullFindsItsCode) {
    open();
    fill(Box::StreetType, "calle");
    EXPECT_EQ(text(Box::StreetType), "CL");
    fill(Box::StreetType, "plaza");
    EXPECT_EQ(text(Box::StreetType), "PZ");
}

TEST_F(StreetBoxes, ALetterStillHeldWhenTheBoxIsLeftCompletesTheStreet) {
    open();
    fill(Box::Municipality, "mad");
    enter(Box::Street);
    type("ALC");
    press(Qt::Key_Delete);
    QTest::keyPress(&box(Box::Street), Qt::Key_A, {});
    press(Qt::Key_Tab);
    EXPECT_EQ(text(Box::Street), "ALCALA");
    EXPECT_EQ(tag(Box::Street), 28000001);
}

TEST_F(StreetBoxes, UndoGivesBackWhatWasTypedBeforeACompletion) {
    open();
    fill(Box::Municipality, "mad");
    enter(Box::Street);
    type("alc");
    ASSERT_EQ(text(Box::Street), "ALCALA");
    EXPECT_EQ(box(Box::Street).cursorPosition(), 3);
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(text(Box::Street), "ALC");
    EXPECT_EQ(tag(Box::Street), 0);
}

TEST_F(StreetBoxes, KeysPressedFasterThanReleasedStillComplete) {
    open();
    fill(Box::Municipality, "mad");
    enter(Box::Street);
    QLineEdit& street = box(Box::Street);
    QTest::keyPress(&street, Qt::Key_A);
    QTest::keyPress(&street, Qt::Key_L);
    QTest::keyRelease(&street, Qt::Key_A);
    QTest::keyRelease(&street, Qt::Key_L);
    EXPECT_EQ(street.text(), "ALCALA");
    EXPECT_EQ(street.selectedText(), "CALA");
}

TEST_F(StreetBoxes, AStreetThatIsAddedIsStoredAsItCanBeFound) {
    open();
    fill(Box::Municipality, "mad");
    fill(Box::StreetType, "CL");
    fill(Box::PostalCode, "28013");
    expectInsertion(MessageAnswer::Yes);
    dialogs.expect("TFFichaVia", accept);
    paste(Box::Street, QStringLiteral(" Nueva  calle de Alcalá "));
    EXPECT_EQ(addedStreet(), ansi("NUEVA CALLE DE ALCALÁ"));
    EXPECT_EQ(text(Box::Street), QStringLiteral("NUEVA CALLE DE ALCALÁ"));
    EXPECT_EQ(state(Box::Street), State::Validated);
    EXPECT_EQ(tag(Box::Street), 99000000);
}

TEST_F(StreetBoxes, AStreetWhoseCardIsCancelledHasATypeOfTheTablesOrNone) {
    open();
    fill(Box::Municipality, "mad");
    fill(Box::PostalCode, "28013");
    const auto typeOfAdded = [&](const QString& typed, const QString& name) {
        box(Box::StreetType).setText(typed); // as an address of a file comes, which no look-up has settled
        expectInsertion(MessageAnswer::Yes);
        messages.expect("¿Desea cancelar esta operación (S/N)?", "Esta modificando los datos de una via",
                        QStringLiteral("Atención"), MessageAnswer::Yes);
        dialogs.expect("TFFichaVia", [](QDialog& card) {
            QTest::mouseClick(&child<QPushButton>(card, "BBCancelar"), Qt::LeftButton);
        });
        fill(Box::Street, name);
        dbase::Dataset streets("DB", "POSTAL", "CODIGO1");
        streets.open();
        streets.last();
        EXPECT_EQ(streets.field("VIA").text(), name.toUpper().toStdString());
        return streets.field("TIPO_VIA").text();
    };
    EXPECT_EQ(typeOfAdded("Calle", "nueva"), "CL");
    EXPECT_EQ(text(Box::StreetType), "CL");
    EXPECT_EQ(typeOfAdded("Calleja", "novisima"), "");
    EXPECT_EQ(text(Box::StreetType), "Calleja");
    EXPECT_EQ(state(Box::StreetType), State::NotValidated);
}

TEST_F(StreetBoxes, AWholeNameThatTheTableHasShortenedIsTakenForItsStreet) {
    addStreets({{"28000009", "RINCON DE LOS ALMENDROS FLORIDOS DE LA (1201)", "CL", "28013"}});
    createTable(
        ambrel::test::defineTable("PROCEDEN", {"CODIGO1 C8", "ABREVIADO L", "NOMBRE C50"}, {"CODIGO1"}),
        {{"28000009", "T", "RINCON DE LOS ALMENDROS FLORIDOS DE LA UMBRIA ALTA"}});
    open();
    fill(Box::Municipality, "mad");
    paste(Box::Street, "Rincon de los almendros floridos de la umbria alta");
    EXPECT_EQ(text(Box::Street), "RINCON DE LOS ALMENDROS FLORIDOS DE LA (1201)");
    EXPECT_EQ(tag(Box::Street), 28000009);
    EXPECT_EQ(text(Box::PostalCode), "28013");
    EXPECT_EQ(state(Box::PostalCode), State::Validated);
}

TEST_F(StreetBoxes, ATextThatIsNotAPostalCodeIsNotCutToANewStreetsCode) {
    open();
    fill(Box::Municipality, "mad");
    fill(Box::StreetType, "CL");
    const auto codeOfAdded = [&](const QString& pasted, const QString& name) {
        paste(Box::PostalCode, pasted);
        expectInsertion(MessageAnswer::Yes);
        messages.expect("¿Desea cancelar esta operación (S/N)?", "Esta modificando los datos de una via",
                        QStringLiteral("Atención"), MessageAnswer::Yes);
        std::string code;
        dialogs.expect("TFFichaVia", [&](QDialog& card) {
            dbase::Dataset streets("DB", "POSTAL", "CODIGO1");
            streets.open();
            streets.last();
            code = streets.field("CODPOSTAL").text();
            QTest::mouseClick(&child<QPushButton>(card, "BBCancelar"), Qt::LeftButton);
        });
        fill(Box::Street, name);
        return code;
    };
    EXPECT_EQ(codeOfAdded("E-28013", "nueva"), "28013");
    EXPECT_EQ(codeOfAdded("2801300", "novisima"), "");
}

TEST_F(StreetBoxes, TheCodeThatAnotherStreetLeftIsNotANewStreets) {
    open();
    fillAddress("mad", "CL", "alcala", "300");
    ASSERT_EQ(text(Box::PostalCode), "28027");
    fill(Box::Number, "");
    expectInsertion(MessageAnswer::Yes);
    dialogs.expect("TFFichaVia", [](QDialog& card) {
        EXPECT_NE(child<QLineEdit>(card, "DBECodPostal").text(), "28027");
        accept(card);
    });
    fill(Box::Street, "nueva");
}

TEST_F(StreetBoxes, AfterARefusedLockLeavingTheBoxAsksAgain) {
    open();
    dbase::Dataset other("DB", "POSTAL");
    other.open();
    ASSERT_TRUE(other.lockCurrent());
    const auto expectRefusal = [this] {
        expectInsertion(MessageAnswer::Yes);
        messages.expect("Repita nuevamente la última operación", "Acceso concurrente");
    };
    fill(Box::Municipality, "mad");
    fill(Box::StreetType, "CL");
    expectRefusal();
    fill(Box::Street, "nueva");
    EXPECT_EQ(tag(Box::Street), 0);
    expectRefusal();
    enter(Box::Street);
    press(Qt::Key_Tab);
    other.unlockAll();
    expectInsertion(MessageAnswer::Yes);
    dialogs.expect("TFFichaVia", accept);
    enter(Box::Street);
    press(Qt::Key_Tab);
    EXPECT_EQ(addedStreet(), "NUEVA");
}

TEST_F(StreetBoxes, WithoutAValidatedMunicipalityNothingIsLookedUpOrOffered) {
    open();
    fill(Box::Street, "alcala");
    EXPECT_EQ(state(Box::Street), State::NotValidated);
    fill(Box::Municipality, "mad");
    enter(Box::Street);
    press(Qt::Key_Tab);
    EXPECT_EQ(state(Box::Street), State::Validated) << "it is looked up once there is a municipality";
}

} // namespace
