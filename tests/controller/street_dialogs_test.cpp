// The controller's dialogs for streets.
#include <QLineEdit>
#include <QTest>

#include "controller/AddressForm.h"
#include "services/TagProperty.h"
#include "support/ModalScript.h"
#include "support/ScriptedMessages.h"

namespace {

using namespace postal_tests;
using ambrel::test::ModalScript;
using ambrel::test::ScriptedMessages;

/// The controller's side of the dialogs that it opens for streets.
class StreetDialogs : public AddressForm {
protected:
    void SetUp() override {
        addMunicipalities({{"28046", "28430", "COLLADO VILLALBA", "N", "9"}});
        addStreets(
            {{"1", "ARENAL", "CL", "28013"},
             {"99000000", "SERRANO", "CL", "28006"},
             {.codigo1 = "99000001", .via = "SIERRA", .tipo = "CL", .codPostal = "28430", .capital = "9"}});
        openForm();
        controller->Padre = &form;
        choose("MADRID");
    }

    [[nodiscard]] std::string streetTag() const { return controller->DM->tbPostal.tag(); }
    [[nodiscard]] std::string municipalityTag() const { return controller->DM->tbMunicipi.tag(); }

    static void close(QDialog& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); }

    ModalScript dialogs;
};

TEST_F(StreetDialogs, ListAnswersByItsTagAndNotByItsModalResult) {
    dialogs.expect("TFBuscarDireccionPostal", [](QDialog& list) {
        ambrel::setTag(list, 1);
        list.done(2);
    });
    EXPECT_TRUE(controller->BuscarDireccionPostal(false));
    dialogs.expect("TFBuscarDireccionPostal", [](QDialog& list) { list.done(1); });
    EXPECT_FALSE(controller->BuscarDireccionPostal(false));
}

TEST_F(StreetDialogs, ChosenRowStaysCurrentUnderTheTagThatWasActiveBefore) {
    ASSERT_EQ(streetTag(), "VIA");
    dialogs.expect("TFBuscarDireccionPostal", [this](QDialog& list) {
        EXPECT_EQ(streetTag(), "NOMBREVIA");
        goToRow("99000001");
        ambrel::setTag(list, 1);
        list.done(1);
    });
    EXPECT_TRUE(controller->BuscarDireccionPostal(false));
    EXPECT_EQ(streetTag(), "VIA");
    EXPECT_EQ(row(), "99000001");
}

TEST_F(StreetDialogs, ListThatIsLeftRestoresTheTagToo) {
    dialogs.expect("TFBuscarDireccionPostal", close);
    EXPECT_FALSE(controller->BuscarDireccionPostal(true));
    EXPECT_EQ(streetTag(), "VIA");
}

TEST_F(StreetDialogs, ListOfAnEmptyTableOpensAndCloses) {
    controller->DM->tbPostal.setFilter("VIA=\"NINGUNA\"");
    dialogs.expect("TFBuscarDireccionPostal", close);
    EXPECT_FALSE(controller->BuscarDireccionPostal(false));
    EXPECT_TRUE(controller->DM->tbPostal.isEmpty());
}

TEST_F(StreetDialogs, ListBelongsToPadre) {
    dialogs.expect("TFBuscarDireccionPostal", [this](QDialog& list) {
        EXPECT_EQ(list.parentWidget(), &form);
        close(list);
    });
    static_cast<void>(controller->BuscarDireccionPostal(false));
}

TEST_F(StreetDialogs, CardPutsMunicipiOnTheFirstMunicipalityWithItsPostalCodeAndOrdersItByName) {
    choose("COLLADO VILLALBA");
    controller->OrdenaPorCodIneMunicipi();
    dialogs.expect("TFFichaVia", [this](QDialog& card) {
        EXPECT_EQ(municipality(), "ALPEDRETE");
        EXPECT_EQ(municipalityTag(), "NOMBRE");
        close(card);
    });
    controller->MuestraFichaVia(opConsulta, {});
    EXPECT_EQ(municipality(), "ALPEDRETE");
    EXPECT_EQ(municipalityTag(), "NOMBRE");
}

TEST_F(StreetDialogs, CardShowsTheMunicipalityThatItIsGiven) {
    goToRow("99000000");
    dialogs.expect("TFFichaVia", [this](QDialog& card) {
        EXPECT_EQ(card.parentWidget(), &form);
        EXPECT_EQ(ambrel::test::child<QLineEdit>(card, "EVecindad").text(), "PUEBLO");
        close(card);
    });
    controller->MuestraFichaVia(opConsulta, "PUEBLO");
}

TEST_F(StreetDialogs, CardIsOpenedForItsOperation) {
    goToRow("99000000");
    dialogs.expect("TFFichaVia", [this](QDialog& card) {
        EXPECT_EQ(controller->DM->tbPostal.state(), dbase::DatasetState::Browse);
        close(card);
    });
    controller->MuestraFichaVia(opBaja, {});
    ScriptedMessages messages;
    dialogs.expect("TFFichaVia", [&](QDialog& card) {
        EXPECT_EQ(controller->DM->tbPostal.state(), dbase::DatasetState::Edit);
        messages.expect("¿Desea cancelar esta operación (S/N)?", "Esta modificando los datos de una via",
                        "Atención", ambrel::MessageAnswer::Yes);
        close(card);
    });
    controller->MuestraFichaVia(opModificacion, {});
}

TEST_F(StreetDialogs, WhatACardCouldNotStoreIsPendingNoMoreOnceItHasClosed) {
    goToRow("99000000");
    dialogs.expect("TFFichaVia", [this](QDialog& card) {
        controller->DM->tbPostalVIA.setText("NO GUARDADA");
        card.done(2); // as after a change that the engine refused
    });
    controller->MuestraFichaVia(opModificacion, {});
    EXPECT_EQ(controller->DM->tbPostal.state(), dbase::DatasetState::Browse);
    EXPECT_EQ(controller->DM->tbPostalVIA.text(), "SERRANO");
    dbase::Dataset other("DB", "POSTAL", "CODIGO1");
    other.open();
    ASSERT_TRUE(other.seek({{"CODIGO1", "99000000"}}, dbase::SeekMode::Exact));
    EXPECT_TRUE(other.lockCurrent()) << "nobody is kept from the street";
}

TEST_F(StreetDialogs, CardThatOnlyShowsLeavesAPendingRowAlone) {
    ASSERT_TRUE(controller->AnadirVia());
    dialogs.expect("TFFichaVia", close);
    controller->MuestraFichaVia(opConsulta, {});
    EXPECT_EQ(controller->DM->tbPostal.state(), dbase::DatasetState::Insert);
    controller->DM->tbPostal.cancel();
}

} // namespace
