// TFFichaVia: how it opens and ends for each operation.
#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QTest>
#include <filesystem>

#include "dialogs/StreetCardForm.h"
#include "support/ModalScript.h"
#include "support/ShownWindow.h"

namespace {

using ambrel::MessageAnswer;
using ambrel::test::boxesDuring;
using dbase::DatasetState;

using StreetCard = postal_tests::StreetCardForm;

// --- Opening

TEST_F(StreetCard, NewStreetStartsEmptyInTheCurrentMunicipality) {
    openCard(opAlta);
    EXPECT_EQ(streets().state(), DatasetState::Insert);
    for (const char* empty : {"EVecindad", "CBProvincia", "CBTipoVia", "DBEVia", "DBECodPostal"}) {
        EXPECT_EQ(textOf(empty), "") << empty;
    }
    EXPECT_EQ(combo("CBTipoVia").currentIndex(), -1);
    EXPECT_EQ(textOf("DBEProvincia"), "28");
    EXPECT_EQ(textOf("DBEImparIni"), "1");
    EXPECT_EQ(textOf("DBEParFin"), "9998");
    EXPECT_EQ(focused(), "EVecindad");
}

TEST_F(StreetCard, DeleteModeReadsBorrarAndDisablesBothGroups) {
    openCard(opBaja);
    EXPECT_EQ(button("BBAceptar").text(), "&Borrar");
    EXPECT_EQ(button("BBAceptar").accessibleName(), "Borrar");
    expectReadOnly();
    EXPECT_EQ(textOf("CBProvincia"), "MADRID [28]");
    EXPECT_EQ(textOf("CBTipoVia"), "CL - CALLE");
    EXPECT_EQ(streets().state(), DatasetState::Browse);
}

TEST_F(StreetCard, ViewIsReadOnly) {
    openCard(opConsulta, {}, "28000001");
    EXPECT_EQ(button("BBAceptar").text(), "&Aceptar");
    expectReadOnly();
    EXPECT_EQ(textOf("DBEVia"), "ALCALA");
    EXPECT_EQ(textOf("CBProvincia"), "MADRID [28]");
}

TEST_F(StreetCard, ModifyingAStreetWhosePostalCodeIs0ShowsTheMunicipalitys) {
    openCard(opModificacion, {}, "99000001");
    EXPECT_EQ(textOf("DBECodPostal"), "28013");
    EXPECT_EQ(value("CODPOSTAL"), "28013");
    EXPECT_EQ(textOf("CBTipoVia"), "PZ - PLAZA");
}

TEST_F(StreetCard, StreetWithoutCodesClearsTheCombosAndShowsTheCurrentMunicipality) {
    openCard(opModificacion, {}, "99000003");
    EXPECT_EQ(textOf("EVecindad"), "MADRID");
    EXPECT_EQ(textOf("CBProvincia"), "");
    EXPECT_EQ(textOf("CBTipoVia"), "");
    EXPECT_EQ(textOf("DBECodPostal"), "28013");
}

TEST_F(StreetCard, APostalCodeThatNoMunicipalityHasShowsTheStreetsOwnName) {
    openCard(opConsulta, {}, "99000002");
    EXPECT_EQ(textOf("EVecindad"), "PERDIDA");
    card.reset();
    openCard(opConsulta, "ALCOBENDAS", "99000002");
    EXPECT_EQ(textOf("EVecindad"), "ALCOBENDAS") << "unless a name was given";
}

TEST_F(StreetCard, GivenNameGoesBeforeThatOfThePostalCode) {
    openCard(opConsulta, "UN NOMBRE LARGO QUE NADIE PODRÍA ESCRIBIR");
    EXPECT_EQ(textOf("EVecindad"), "UN NOMBRE LARGO QUE NADIE PODRÍA ESCRIBIR");
}

TEST_F(StreetCard, StreetThatMayNotBeChangedOpensReadOnly) {
    messages.expect("No puede modificar los datos de esta via", "Via no modificable.");
    openCard(opModificacion, {}, "28000001");
    expectReadOnly();
    QTest::mouseClick(&button("BBAceptar"), Qt::LeftButton);
    EXPECT_FALSE(card->isVisible()) << "it is only a view";
}

TEST_F(StreetCard, ACardThatCannotStartShowsTheProvinceAndTheTypeThatLoadingLeft) {
    messages.expect("No puede modificar los datos de esta via", "Via no modificable.");
    openCard(opModificacion, {}, "28000001");
    EXPECT_EQ(textOf("CBProvincia"), "");
    EXPECT_EQ(textOf("CBTipoVia"), "CL - CALLE");
}

TEST_F(StreetCard, StreetThatAnotherWorkstationHoldsOpensReadOnlyAndSaysWhy) {
    dbase::Dataset other("DB", "POSTAL");
    other.open();
    ASSERT_TRUE(other.lockCurrent()); // the first row: 99000000
    const auto boxes = boxesDuring([this] { openCard(opModificacion); });
    ASSERT_EQ(boxes.size(), 1U);
    EXPECT_TRUE(boxes[0].text.contains("otro usuario")) << boxes[0].text.toStdString();
    expectReadOnly();
    press(Qt::Key_Escape);
    EXPECT_FALSE(card->isVisible());
}

TEST_F(StreetCard, TheProvincesThatAreThereAlreadyStayWhenItIsShownAgain) {
    openCard(opConsulta);
    card->hide();
    ambrel::test::showActive(*card);
    EXPECT_EQ(combo("CBProvincia").count(), 8);
    EXPECT_EQ(combo("CBTipoVia").count(), 3);
    EXPECT_EQ(textOf("CBProvincia"), "MADRID [28]");
}

TEST_F(StreetCard, HiddenEditsFollowTheRecord) {
    openCard(opModificacion);
    streets().field("PROVINCIA").setText("08");
    streets().field("TIPO_VIA").setText("PZ");
    EXPECT_EQ(textOf("DBEProvincia"), "08");
    EXPECT_EQ(textOf("DBETipoVia"), "PZ");
}

// --- Ending

TEST_F(StreetCard, NewStreetIsStoredByKeyboardAlone) {
    openCard(opAlta);
    typeInto("EVecindad", "madr");
    EXPECT_EQ(textOf("EVecindad"), "MADRID");
    press(Qt::Key_Return);
    EXPECT_EQ(textOf("DBECodPostal"), "28013");
    EXPECT_EQ(textOf("CBProvincia"), "MADRID [28]");
    press(Qt::Key_Tab);
    typeInto(focused().c_str(), "pz");
    press(Qt::Key_Tab);
    typeInto(focused().c_str(), "del sol");
    press(Qt::Key_A, Qt::AltModifier);
    expectClosed();
    EXPECT_EQ(card->result(), 1);
    EXPECT_EQ(stored("99000004", "VIA"), "DEL SOL");
    EXPECT_EQ(stored("99000004", "TIPO_VIA"), "PZ");
    EXPECT_EQ(stored("99000004", "PROVINCIA"), "28");
    EXPECT_EQ(stored("99000004", "CAPITAL"), "0");
    EXPECT_EQ(stored("99000004", "CODPOSTAL"), "28013");
}

TEST_F(StreetCard, EmptyNumbersOfANewStreetAreStoredAsTheWholeRanges) {
    openCard(opAlta);
    fillIn();
    for (const char* name : {"DBEImparIni", "DBEImparFin", "DBEParIni", "DBEParFin"}) {
        edit(name).clear();
    }
    QTest::mouseClick(&button("BBAceptar"), Qt::LeftButton);
    EXPECT_FALSE(card->isVisible());
    EXPECT_EQ(stored("99000004", "IMPAR_INI"), "1");
    EXPECT_EQ(stored("99000004", "IMPAR_FIN"), "9999");
    EXPECT_EQ(stored("99000004", "PAR_INI"), "2");
    EXPECT_EQ(stored("99000004", "PAR_FIN"), "9998");
}

TEST_F(StreetCard, WhatIsTypedReachesTheRecordBeforeTheAltKeyOfTheButtonActs) {
    openCard(opModificacion);
    edit("DBEVia").selectAll();
    typeInto("DBEVia", "goya");
    press(Qt::Key_A, Qt::AltModifier);
    expectClosed();
    EXPECT_EQ(stored("99000000", "VIA"), "GOYA");
    EXPECT_EQ(streets().state(), DatasetState::Browse);
}

TEST_F(StreetCard, ChangeIsDroppedOnlyWhenTheUserSaysSo) {
    const std::vector<std::pair<const char*, std::function<void()>>> ways{
        {"Escape", [this] { press(Qt::Key_Escape); }},
        {"BBCancelar", [this] { QTest::mouseClick(&button("BBCancelar"), Qt::LeftButton); }},
        {"close box", [this] { card->close(); }}};
    for (const auto& [way, close] : ways) {
        SCOPED_TRACE(way);
        openCard(opModificacion);
        edit("DBEVia").setText("GOYA");
        expectCancelQuestion(MessageAnswer::No);
        close();
        EXPECT_TRUE(card->isVisible());
        EXPECT_EQ(value("VIA"), "GOYA") << "nothing is lost";
        expectCancelQuestion(MessageAnswer::Yes);
        close();
        EXPECT_FALSE(card->isVisible());
        EXPECT_EQ(card->result(), 2);
        EXPECT_EQ(stored("99000000", "VIA"), "GRAN VIA");
        card.reset();
    }
}

TEST_F(StreetCard, ViewAndDeletionAreLeftWithoutAQuestion) {
    for (const TOperacion operation : {opConsulta, opBaja}) {
        openCard(operation);
        press(Qt::Key_Escape);
        EXPECT_FALSE(card->isVisible());
        EXPECT_EQ(card->result(), 2);
        card.reset();
    }
}

TEST_F(StreetCard, DeletionAsksAndClosesWhateverTheAnswer) {
    openCard(opBaja);
    expectDeleteQuestion(MessageAnswer::No);
    press(Qt::Key_B, Qt::AltModifier);
    expectClosed();
    EXPECT_EQ(stored("99000000", "VIA"), "GRAN VIA");
    card.reset();
    openCard(opBaja);
    expectDeleteQuestion(MessageAnswer::Yes);
    QTest::mouseClick(&button("BBAceptar"), Qt::LeftButton);
    EXPECT_FALSE(card->isVisible());
    EXPECT_EQ(stored("99000000", "VIA"), "");
}

TEST_F(StreetCard, TheCardClosesAlsoWhenTheStreetCouldNotBeStored) {
    dbase::Dataset other("DB", "POSTAL");
    other.open();
    ASSERT_TRUE(other.lockCurrent()); // another workstation is allocating a key
    openCard(opAlta, {}, "99000001");
    fillIn();
    messages.expect("Repita nuevamente la última operación", "Acceso concurrente");
    QTest::mouseClick(&button("BBAceptar"), Qt::LeftButton);
    EXPECT_TRUE(messages.isDone());
    EXPECT_FALSE(card->isVisible());
    EXPECT_EQ(streets().state(), DatasetState::Insert) << "the row stays pending";
    EXPECT_EQ(stored("99000004", "VIA"), "");
}

TEST_F(StreetCard, TheEnginesTextIsShownOnceWhenStoringFails) {
    openCard(opAlta);
    fillIn();
    leaveUnchecked();
    std::filesystem::resize_file(folder.path() / std::filesystem::path("POSTAL.DBF"), 40);
    const auto boxes = boxesDuring([this] { QTest::mouseClick(&button("BBAceptar"), Qt::LeftButton); });
    EXPECT_EQ(boxes.size(), 1U);
    EXPECT_FALSE(card->isVisible());
    EXPECT_TRUE(controller->streetFailure().isEmpty()) << "shown";
}

TEST_F(StreetCard, EscapeInAnOpenListClosesOnlyTheList) {
    openCard(opModificacion);
    QComboBox& box = combo("CBTipoVia");
    box.setFocus();
    box.showPopup();
    ASSERT_TRUE(box.view()->isVisible());
    QTest::keyClick(box.view(), Qt::Key_Escape);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !box.view()->isVisible(); }));
    EXPECT_TRUE(card->isVisible());
}

TEST_F(StreetCard, ACardWhoseTablesAreMissingIsAView) {
    std::filesystem::remove(folder.path() / std::filesystem::path("PROVIN.DBF"));
    EXPECT_EQ(boxesDuring([this] { openCard(opModificacion); }).size(), 1U);
    expectReadOnly();
    EXPECT_EQ(streets().state(), DatasetState::Browse);
}

} // namespace
