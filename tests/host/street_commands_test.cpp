// New streets from the street box, the list of streets and the card of a street.
#include <gtest/gtest.h>

#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include "host/DataFolder.h"
#include "host/FormTest.h"
#include "services/Confamb.h"
#include "support/ModalScript.h"
#include "support/ShownWindow.h"

namespace {

using ambrel::MessageAnswer;
using ambrel::test::child;
using ambrel::test::ModalScript;
using ambrel::test::ScriptedMessages;
using host_tests::clickIn;
using host_tests::FormTest;
using host_tests::justClick;
using host_tests::typeAndClick;

/// In the list of streets, searches for one by typing and clicks a button.
ModalScript::Step seekAndClick(const QString& street, const char* button) {
    return typeAndClick("EVia", street, button);
}

class StreetCommandsTest : public FormTest {
protected:
    static void expectInsertion(ScriptedMessages& messages, MessageAnswer answer) {
        messages.expect(QStringLiteral("¿Desea insertarla como una nueva via?"), QStringLiteral("ATENCIÓN"),
                        QStringLiteral("Atención"), answer);
    }
    static void expectList(ScriptedMessages& messages, MessageAnswer answer) {
        messages.expect(QStringLiteral("¿Desea ver la lista de direcciones actuales?"),
                        QStringLiteral("ATENCIÓN"), QStringLiteral("Atención"), answer);
    }
    /// Opens a customer in MADRID, with a street type and a postal code.
    void openInMadrid() {
        open();
        fill("EMunicipio", "mad");
        fill("ETipoVia", "CL");
        fill("ECodPostal", "28005");
    }
    void insertStreet(const QString& name) {
        expectInsertion(messages, MessageAnswer::Yes);
        dialogs.expect("TFFichaVia", justClick("BBAceptar"));
        fill("EVia", name);
    }

    ScriptedMessages messages;
    ModalScript dialogs;
};

TEST_F(StreetCommandsTest, AnUnknownStreetIsOfferedAsANewOne) {
    openInMadrid();
    insertStreet("HORNO NUEVO");
    EXPECT_EQ(text("EVia"), QStringLiteral("HORNO NUEVO"));
    EXPECT_EQ(tag("EVia"), 99000000);
    EXPECT_EQ(text("ECodPostal"), QStringLiteral("28005"));
    EXPECT_EQ(tag("EMunicipio"), 28079);
    fill("ENumero", "7");
    EXPECT_EQ(tag("ENumero"), 1);
    EXPECT_EQ(tag("ECodPostal"), 1);
}

TEST_F(StreetCommandsTest, TheNewStreetTakesTheNameThatItsCardGivesIt) {
    openInMadrid();
    expectInsertion(messages, MessageAnswer::Yes);
    dialogs.expect("TFFichaVia", typeAndClick("DBEVia", "HORNO VIEJO", "BBAceptar"));
    fill("EVia", "HORNO NUEVO");
    EXPECT_EQ(text("EVia"), QStringLiteral("HORNO VIEJO"));
    EXPECT_EQ(tag("EVia"), 99000000);
}

TEST_F(StreetCommandsTest, ANewStreetIsCompletedTheNextTime) {
    openInMadrid();
    insertStreet("HORNO NUEVO");
    messages.expect(QStringLiteral("¿Desea descartar los cambios?"),
                    QStringLiteral("Los datos de este cliente no se han guardado."),
                    QStringLiteral("Atención"), MessageAnswer::Yes);
    click("BBDeshacer");
    fill("EMunicipio", "mad");
    fill("ETipoVia", "CL");
    fill("EVia", "hor");
    EXPECT_EQ(text("EVia"), QStringLiteral("HORNO NUEVO"));
    EXPECT_EQ(text("ECodPostal"), QStringLiteral("28005"));
}

TEST_F(StreetCommandsTest, AnUnknownStreetIsAskedAboutOnce) {
    openInMadrid();
    expectInsertion(messages, MessageAnswer::No);
    expectList(messages, MessageAnswer::No);
    fill("EVia", "NINGUNA");
    EXPECT_EQ(tag("EVia"), 0);
    EXPECT_EQ(text("EVia"), QStringLiteral("NINGUNA"));
    enter("EVia");
    press(Qt::Key_Tab);
    EXPECT_TRUE(messages.isDone());
}

TEST_F(StreetCommandsTest, AStoredStreetThatIsNotKnownIsNotAskedAbout) {
    addCustomers({{"Ana", "CL", "NINGUNA", "", "28005", "MADRID", "MADRID"}});
    open();
    enter("EVia");
    press(Qt::Key_Tab);
    EXPECT_TRUE(box("ENumero")->hasFocus());
}

TEST_F(StreetCommandsTest, NothingIsOfferedInAMunicipalityThatIsNotKnown) {
    open();
    fill("EVia", "NINGUNA");
    EXPECT_EQ(tag("EVia"), 0);
}

TEST_F(StreetCommandsTest, AnotherMunicipalityAsksNothingUntilTheStreetIsLeft) {
    openInMadrid();
    fill("EVia", "alc");
    fill("EMunicipio", "haro");
    EXPECT_EQ(tag("EVia"), 0);
    expectInsertion(messages, MessageAnswer::No);
    expectList(messages, MessageAnswer::No);
    enter("EVia");
    press(Qt::Key_Tab);
    EXPECT_TRUE(messages.isDone());
}

TEST_F(StreetCommandsTest, TheListOffersAStreetInPlaceOfAnUnknownOne) {
    openInMadrid();
    expectInsertion(messages, MessageAnswer::No);
    expectList(messages, MessageAnswer::Yes);
    dialogs.expect("TFBuscarDireccionPostal", seekAndClick("COR", "BBAceptar"));
    fill("EVia", "NINGUNA");
    EXPECT_EQ(text("EVia"), QStringLiteral("CORTA"));
    EXPECT_EQ(tag("EVia"), 28000005);
    EXPECT_EQ(text("ECodPostal"), QStringLiteral("28005"));
    EXPECT_EQ(tag("EMunicipio"), 28079);
}

TEST_F(StreetCommandsTest, TheButtonOpensTheListAndTheStreetBringsItsTypeAndCode) {
    openInMadrid();
    dialogs.expect("TFBuscarDireccionPostal", seekAndClick("COR", "BBAceptar"));
    click("BBVia");
    EXPECT_EQ(text("EVia"), QStringLiteral("CORTA"));
    EXPECT_EQ(text("ETipoVia"), QStringLiteral("CL"));
    EXPECT_EQ(text("ECodPostal"), QStringLiteral("28005"));
    EXPECT_EQ(tag("EMunicipio"), 28079);
}

TEST_F(StreetCommandsTest, LeavingTheListKeepsTheForm) {
    openInMadrid();
    fill("EVia", "alc");
    dialogs.expect("TFBuscarDireccionPostal", seekAndClick("COR", "BBCancelar"));
    enter("EVia");
    press(Qt::Key_F4);
    EXPECT_EQ(text("EVia"), QStringLiteral("ALCALA"));
    EXPECT_EQ(tag("EVia"), 28000001);
    fill("ENumero", "60");
    EXPECT_EQ(text("ECodPostal"), QStringLiteral("28009"));
}

TEST_F(StreetCommandsTest, TheKeyThatOpenedTheListCompletesNothingInTheFormWhenItIsReleased) {
    openInMadrid();
    dialogs.expect("TFBuscarDireccionPostal", [this](QDialog& list) {
        QTest::sendKeyEvent(QTest::Release, box("EVia"), Qt::Key_F4, QString(), Qt::NoModifier);
        seekAndClick("MAY", "BBAceptar")(list);
    });
    enter("EVia");
    press(Qt::Key_F4);
    EXPECT_EQ(text("EVia"), QStringLiteral("MAYOR"));
}

TEST_F(StreetCommandsTest, WithoutMunicipalityTheListBeginsAtHomeAndBringsOne) {
    Config.setProvince(26, "RIOJA, LA", "RIOJA, LA");
    open();
    dialogs.expect("TFBuscarDireccionPostal", seekAndClick("VEG", "BBAceptar"));
    choose("MIVia");
    EXPECT_EQ(text("EVia"), QStringLiteral("VEGA"));
    EXPECT_EQ(text("EMunicipio"), QStringLiteral("HARO"));
    EXPECT_EQ(tag("EMunicipio"), 26071);
    EXPECT_EQ(text("EProvincia"), QStringLiteral("RIOJA, LA"));
    EXPECT_EQ(text("ECodPostal"), QStringLiteral("26200"));
}

TEST_F(StreetCommandsTest, TheCardOfAStreetOfTheDirectoryCanOnlyBeRead) {
    openInMadrid();
    fill("EVia", "alc");
    dialogs.expect("TFFichaVia", [](QDialog& card) {
        EXPECT_FALSE(child<QLineEdit>(card, "DBEVia").isEnabled());
        EXPECT_EQ(child<QLineEdit>(card, "DBEVia").text(), QStringLiteral("ALCALA"));
        clickIn(card, "BBCancelar");
    });
    choose("MIFichaVia");
    EXPECT_EQ(tag("EVia"), 28000001);
    EXPECT_EQ(tag("EMunicipio"), 28079);
}

TEST_F(StreetCommandsTest, TheCardOfAUsersStreetCanBeChanged) {
    openInMadrid();
    insertStreet("HORNO NUEVO");
    dialogs.expect("TFFichaVia", typeAndClick("DBECodPostal", "28013", "BBAceptar"));
    choose("MIFichaVia");
    EXPECT_EQ(text("EVia"), QStringLiteral("HORNO NUEVO"));
    EXPECT_EQ(text("ECodPostal"), QStringLiteral("28013"));
}

TEST_F(StreetCommandsTest, WithoutAKnownStreetThereIsNoCard) {
    open();
    messages.expect(QStringLiteral("Elija antes una vía que esté en las tablas."),
                    QStringLiteral("Ficha de la vía"));
    choose("MIFichaVia");
}

TEST_F(StreetCommandsTest, AnotherProgramOnTheFolderSeesTheNewStreet) {
    openInMadrid();
    host::MainWindow other(host::hostDatabase); // its tables are open before the street exists
    insertStreet("HORNO NUEVO");
    ambrel::test::showActive(other);
    const auto typeInOther = [&](const char* name, const QString& what) {
        auto* edit = other.findChild<QLineEdit*>(QLatin1String(name));
        edit->setFocus(Qt::TabFocusReason);
        QTest::keyClicks(edit, what);
        return edit;
    };
    typeInOther("EMunicipio", "mad");
    EXPECT_EQ(typeInOther("EVia", "hor")->text(), QStringLiteral("HORNO NUEVO"));
}

} // namespace
