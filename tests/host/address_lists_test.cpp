// The lists that the form's boxes open, and the effect of a choice.
#include <gtest/gtest.h>

#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <filesystem>

#include "dialogs/common/DataGrid.h"
#include "host/FormTest.h"
#include "host/HostTable.h"
#include "services/Confamb.h"
#include "support/ModalScript.h"

namespace {

using ambrel::MessageAnswer;
using ambrel::test::child;
using ambrel::test::ModalScript;
using ambrel::test::ScriptedMessages;
using host_tests::clickIn;
using host_tests::FormTest;
using host_tests::justClick;
using host_tests::typeAndClick;

class AddressListsTest : public FormTest {
protected:
    static void expectTypeQuestion(ScriptedMessages& messages, MessageAnswer answer) {
        messages.expect(QStringLiteral("¿Desea buscarlo en la relación alfabética (S/N)?"),
                        QStringLiteral("No se ha encontrado ningún tipo de vía con esta abreviatura"),
                        QStringLiteral("Atención"), answer);
    }

    ScriptedMessages messages;
    ModalScript dialogs;
};

TEST_F(AddressListsTest, AnUnknownMunicipalityAsksAndItsListSettlesIt) {
    open();
    expectMunicipalityQuestion(messages, MessageAnswer::Yes);
    dialogs.expect("TFBuscarMunicipios", typeAndClick("ENOMBRE", "HAR", "BBAceptar"));
    fill("EMunicipio", "villaninguna");
    EXPECT_EQ(text("EMunicipio"), QStringLiteral("HARO"));
    EXPECT_EQ(tag("EMunicipio"), 26071);
    EXPECT_EQ(text("EProvincia"), QStringLiteral("RIOJA, LA"));
    EXPECT_EQ(text("ECodPostal"), QStringLiteral("26200"));
}

TEST_F(AddressListsTest, AMunicipalityListLeftWithoutChoiceLeavesTheText) {
    open();
    expectMunicipalityQuestion(messages, MessageAnswer::Yes);
    dialogs.expect("TFBuscarMunicipios", justClick("BBCancelar"));
    fill("EMunicipio", "villaninguna");
    EXPECT_EQ(text("EMunicipio"), QStringLiteral("VILLANINGUNA"));
    EXPECT_EQ(tag("EMunicipio"), 0);
    EXPECT_EQ(text("EProvincia"), QString());
}

TEST_F(AddressListsTest, AnUnknownMunicipalityIsAskedAboutOnce) {
    open();
    expectMunicipalityQuestion(messages, MessageAnswer::No);
    fill("EMunicipio", "villaninguna");
    enter("EMunicipio");
    press(Qt::Key_Tab);
    EXPECT_TRUE(messages.isDone());
    expectMunicipalityQuestion(messages, MessageAnswer::No);
    fill("EMunicipio", "villaotra");
    EXPECT_TRUE(messages.isDone());
}

TEST_F(AddressListsTest, AStoredMunicipalityThatIsNotKnownIsNotAskedAbout) {
    addCustomers({{"Ana", "XX", "", "", "", "VILLANINGUNA", ""}});
    open();
    enter("EMunicipio");
    for (int count = 0; count < 3; ++count) {
        press(Qt::Key_Tab); // through the street type, too
    }
    EXPECT_TRUE(box("EVia")->hasFocus());
}

TEST_F(AddressListsTest, TheListOfMunicipalitiesOpensFromItsBoxWithF4) {
    open();
    fill("EMunicipio", "mad");
    dialogs.expect("TFBuscarMunicipios", typeAndClick("ENOMBRE", "HAR", "BBAceptar"));
    enter("EMunicipio");
    press(Qt::Key_F4);
    EXPECT_EQ(tag("EMunicipio"), 26071);
    EXPECT_EQ(text("ECodPostal"), QStringLiteral("26200"));
}

TEST_F(AddressListsTest, LeavingTheListOfMunicipalitiesKeepsTheFormsOwn) {
    open();
    fill("EMunicipio", "mad");
    dialogs.expect("TFBuscarMunicipios", typeAndClick("ENOMBRE", "HAR", "BBCancelar"));
    click("BBMunicipio");
    EXPECT_EQ(tag("EMunicipio"), 28079);
    fill("EVia", "alc");
    EXPECT_EQ(text("EVia"), QStringLiteral("ALCALA"))
        << "streets are still sought in the form's municipality";
}

TEST_F(AddressListsTest, AnUnknownStreetTypeAsksWhenItIsLeft) {
    open();
    expectTypeQuestion(messages, MessageAnswer::Yes);
    dialogs.expect("TFTipoViasLista", typeAndClick("EBUSCA", "PZ", "BBAceptar"));
    fill("ETipoVia", "XX");
    EXPECT_EQ(text("ETipoVia"), QStringLiteral("PZ"));
}

TEST_F(AddressListsTest, AKnownOrBlankStreetTypeAsksNothing) {
    open();
    fill("ETipoVia", "cl");
    EXPECT_EQ(text("ETipoVia"), QStringLiteral("CL"));
    fill("ETipoVia", "");
    EXPECT_EQ(text("ETipoVia"), QString());
}

TEST_F(AddressListsTest, AnsweringNoKeepsTheStreetTypeAndAsksNoMore) {
    open();
    expectTypeQuestion(messages, MessageAnswer::No);
    fill("ETipoVia", "XX");
    EXPECT_EQ(text("ETipoVia"), QStringLiteral("XX"));
    enter("ETipoVia");
    press(Qt::Key_Tab);
}

TEST_F(AddressListsTest, TheButtonOpensTheStreetTypesAtTheOneInTheBox) {
    open();
    fill("EMunicipio", "mad");
    fill("ETipoVia", "CL");
    fill("EVia", "may");
    ASSERT_EQ(text("ECodPostal"), QStringLiteral("28013"));
    dialogs.expect("TFTipoViasLista", [](QDialog& dialog) {
        const auto& grid = child<ambrel::DataGrid>(dialog, "DBGTIPO_VIA");
        EXPECT_EQ(grid.cellText(grid.currentRow(), 0), QStringLiteral("CL"));
        QTest::keyClick(&child<QLineEdit>(dialog, "EBUSCA"), Qt::Key_Down);
        clickIn(dialog, "BBAceptar");
    });
    click("BBTipoVia");
    EXPECT_EQ(text("ETipoVia"), QStringLiteral("PZ"));
    EXPECT_EQ(text("ECodPostal"), QStringLiteral("28012")) << "the street is found again under its new type";
}

TEST_F(AddressListsTest, TheButtonOpensTheProvinces) {
    open();
    dialogs.expect("TFProvList", typeAndClick("E_BUSQUEDA", "R", "BBAceptar"));
    click("BBProvincia");
    EXPECT_EQ(text("EProvincia"), QStringLiteral("RIOJA, LA"));
    EXPECT_EQ(tag("EProvincia"), 0) << "no municipality implies it";
}

TEST_F(AddressListsTest, TheListOfProvincesLeftWithoutChoiceKeepsTheBox) {
    Config.setProvince(17, "GIRONA", "GIRONA");
    open();
    fill("EMunicipio", "mad");
    dialogs.expect("TFProvList", typeAndClick("E_BUSQUEDA", "A", "BBCancelar"));
    enter("EProvincia");
    press(Qt::Key_F4);
    EXPECT_EQ(text("EProvincia"), QStringLiteral("MADRID"));
    EXPECT_EQ(tag("EProvincia"), 1);
}

TEST_F(AddressListsTest, TheMenuOpensTheSameLists) {
    open();
    dialogs.expect("TFBuscarMunicipios", typeAndClick("ENOMBRE", "HAR", "BBAceptar"));
    choose("MIMunicipio");
    dialogs.expect("TFTipoViasLista", typeAndClick("EBUSCA", "AV", "BBAceptar"));
    choose("MITipoVia");
    dialogs.expect("TFProvList", justClick("BBCancelar"));
    choose("MIProvincia");
    EXPECT_EQ(tag("EMunicipio"), 26071);
    EXPECT_EQ(text("ETipoVia"), QStringLiteral("AV"));
    EXPECT_EQ(text("EProvincia"), QStringLiteral("RIOJA, LA"));
}

TEST_F(AddressListsTest, AChoiceIsPartOfTheRow) {
    open();
    fill("ENombre", "Ana");
    dialogs.expect("TFTipoViasLista", typeAndClick("EBUSCA", "AV", "BBAceptar"));
    click("BBTipoVia");
    click("BBGuardar");
    EXPECT_EQ(stored("Ana", "TIPO_VIA"), "AV");
}

class AddressPreviewTest : public FormTest {};

TEST_F(AddressPreviewTest, TheLineFollowsWhatIsTyped) {
    open();
    EXPECT_EQ(label("LDomicilio"), QString());
    fill("EMunicipio", "mad");
    fill("ETipoVia", "CL");
    fill("EVia", "alc");
    fill("ENumero", "45");
    EXPECT_EQ(label("LDomicilio"), QStringLiteral("CALLE ALCALA, 45 28014 MADRID"));
    enter("EPiso");
    type("2º");
    EXPECT_EQ(label("LDomicilio"), QStringLiteral("CALLE ALCALA, 45, 2º 28014 MADRID"));
}

TEST_F(AddressPreviewTest, TheLineFollowsTheRow) {
    addCustomers({{"Ana", "PZ", "MAYOR", "3", "28012", "MADRID", "MADRID"},
                  {"Eva", "", "VEGA", "", "26200", "HARO", "RIOJA, LA"}});
    open();
    EXPECT_EQ(label("LDomicilio"), QStringLiteral("PLAZA MAYOR, 3 28012 MADRID"));
    click("BBSiguiente");
    EXPECT_EQ(label("LDomicilio"), QStringLiteral("VEGA 26200 HARO"));
    click("BBNuevo");
    EXPECT_EQ(label("LDomicilio"), QString());
}

TEST_F(AddressPreviewTest, WithoutStreetTypesTheLineKeepsTheAbbreviation) {
    for (const char* file : {"TIPO_VIA.DBF", "TIPO_VIA.MDX"}) {
        ASSERT_TRUE(std::filesystem::remove(folder / file));
    }
    addCustomers({{"Ana", "PZ", "MAYOR", "3", "28012", "MADRID", "MADRID"}});
    open();
    EXPECT_EQ(label("LDomicilio"), QStringLiteral("PZ MAYOR, 3 28012 MADRID"));
}

} // namespace
