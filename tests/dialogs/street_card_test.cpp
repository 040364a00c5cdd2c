// TFFichaVia: its look, and how it opens and ends for each operation.
#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QApplication>
#include <QStatusBar>
#include <QTest>
#include <filesystem>

#include "dialogs/DialogTexts.h"
#include "dialogs/StreetCardForm.h"
#include "support/ModalScript.h"
#include "support/ShownWindow.h"

namespace {

using ambrel::MessageAnswer;
using ambrel::test::boxesDuring;
using ambrel::test::child;
using dbase::DatasetState;

class StreetCard : public postal_tests::StreetCardForm {
protected:
    void expectCancelQuestion(MessageAnswer answer) {
        messages.expect("¿Desea cancelar esta operación (S/N)?", "Esta modificando los datos de una via",
                        "Atención", answer);
    }
    void expectDeleteQuestion(MessageAnswer answer) {
        messages.expect("¿Seguro que desea borrar la via GRAN VIA de la base de datos?", "Eliminar Via",
                        "Atención", answer);
    }
    /// A button that a key clicks acts a moment later.
    void expectClosed() const {
        EXPECT_TRUE(QTest::qWaitFor([this] { return !card->isVisible(); }));
    }
    void expectReadOnly() const {
        EXPECT_FALSE(child<QGroupBox>(*card, "GBIdentificacion").isEnabled());
        EXPECT_FALSE(child<QGroupBox>(*card, "GBNumeracion").isEnabled());
    }
};

// --- Look

TEST_F(StreetCard, HasItsCaptionsHintsAndWidths) {
    openCard(opModificacion);
    const auto data = [](const char* name, const QString& text, int width) {
        return ambrel::test::ControlTexts{name, "ambrel::BoundEdit", text, {}, {width, 0}};
    };
    const auto label = [](const char* name, const QString& text) {
        return ambrel::test::ControlTexts{name, "QLabel", text};
    };
    ambrel::test::expectControls(
        *card, {{"TFFichaVia", "TFFichaVia", "Datos de la Via", {}, {513, 0}},
                {"GBIdentificacion", "QGroupBox", "  Identificación de la Via  "},
                label("LVecindad_", "Vecindad:"),
                {"EVecindad",
                 "QLineEdit",
                 "MADRID",
                 "Municipio según el listado de municipios del I.N.E. Pulse el botón para ver todos.",
                 {345, 0}},
                {"BBListar", "QPushButton", "Lista I.N.E.", {}, {80, 0}},
                label("LProvincia_", "Provincia:"),
                {"CBProvincia", "QComboBox", {}, "Seleccione la provincia del municipio", {345, 0}},
                label("LTipoVia_", "Tipo de Vía:"),
                {"CBTipoVia", "QComboBox", {}, "Tipo de vía según la codificación del Catastro", {48, 0}},
                label("LDomicilio_", "Via:"),
                data("DBEVia", "GRAN VIA", 338),
                label("LCodPostal_", "Cod.Postal:"),
                data("DBECodPostal", "28013", 56),
                data("DBEProvincia", "28", 0),
                data("DBETipoVia", "CL", 0),
                {"GBNumeracion", "QGroupBox", "  Numeración de la Vía  "},
                label("LImparIni_", "Inicio Impar:"),
                data("DBEImparIni", "1", 53),
                label("LImparFin_", "Fin Impar:"),
                data("DBEImparFin", "99", 53),
                label("LParIni_", "Inicio Par:"),
                data("DBEParIni", "2", 53),
                label("LParFin_", "Fin Par:"),
                data("DBEParFin", "98", 53),
                {"POperaciones", "QWidget", {}},
                {"BBAceptar",
                 "QPushButton",
                 "&Aceptar",
                 "Pinche el botón para guardar los datos y salir de la pantalla",
                 {85, 0}},
                {"BBCancelar",
                 "QPushButton",
                 "&Salir",
                 "Pinche el botón si desea cancelar los cambios y salir de la pantalla",
                 {85, 0}},
                {"SBAyuda", "QStatusBar", {}}});
    EXPECT_EQ(card->minimumSize(), card->maximumSize()) << "one size";
    EXPECT_FALSE(card->windowFlags() & Qt::WindowMinMaxButtonsHint);
    EXPECT_FALSE(child<QWidget>(*card, "DBEProvincia").isVisible());
    EXPECT_FALSE(child<QWidget>(*card, "DBETipoVia").isVisible());
}

TEST_F(StreetCard, CombosAreEditableWithoutCompleterAndNeverInsert) {
    openCard(opModificacion);
    const QStringList provinces{"BARCELONA [08]", "CORUÑA, A [15]", "MADRID [28]", "NAVARRA [31]"};
    const QStringList types{"AV - AVENIDA", "CL - CALLE", "PZ - PLAZA"};
    for (const auto& [name, items, rows] :
         {std::tuple("CBProvincia", provinces, 20), std::tuple("CBTipoVia", types, 15)}) {
        QComboBox& box = combo(name);
        EXPECT_TRUE(box.isEditable()) << name;
        EXPECT_EQ(box.completer(), nullptr) << name;
        EXPECT_EQ(box.maxVisibleItems(), rows) << name;
        typeInto(name, "Z");
        leaveByTab();
        QStringList found;
        for (int i = 0; i < box.count(); ++i) {
            found << box.itemText(i);
        }
        EXPECT_EQ(found, items) << name;
    }
    EXPECT_GE(combo("CBTipoVia").view()->minimumWidth(), 200);
}

TEST_F(StreetCard, LengthsAndCapitalsApplyToTypingOnly) {
    struct Rule {
        const char* control;
        bool capitals;
        int length;
    };
    for (const Rule& rule :
         {Rule{"EVecindad", true, 25}, Rule{"CBProvincia", true, 60}, Rule{"CBTipoVia", false, 2},
          Rule{"DBEVia", true, 45}, Rule{"DBECodPostal", false, 60}}) {
        openCard(opModificacion);
        auto& control = child<QWidget>(*card, rule.control);
        auto* const box = qobject_cast<QComboBox*>(&control);
        QLineEdit& line = box ? *box->lineEdit() : edit(rule.control);
        enter(rule.control); // leaving EVecindad fills in others
        line.clear();
        typeInto(rule.control, QString(60, u'ñ'));
        const QString typed(rule.length, rule.capitals ? u'Ñ' : u'ñ');
        EXPECT_EQ(line.text().toStdString(), typed.toStdString()) << rule.control;
        const QString set(60, u'a');
        line.setText(set);
        EXPECT_EQ(line.text(), set) << rule.control;
        streets().cancel();
        card.reset();
    }
}

TEST_F(StreetCard, StatusBarShowsTheHintOfTheFocus) {
    openCard(opModificacion);
    auto& help = child<QStatusBar>(*card, "SBAyuda");
    for (const char* name : {"EVecindad", "CBProvincia", "CBTipoVia", "BBAceptar", "BBCancelar"}) {
        enter(name);
        EXPECT_EQ(help.currentMessage(), child<QWidget>(*card, name).toolTip()) << name;
        EXPECT_FALSE(help.currentMessage().isEmpty()) << name;
    }
    enter("DBEVia");
    EXPECT_EQ(help.currentMessage(), "");
}

TEST_F(StreetCard, IsCentredOnTheMainForm) {
    QWidget mainForm;
    mainForm.setGeometry(40, 30, 700, 650);
    ambrel::test::showActive(mainForm);
    QDialog between(&mainForm);
    card = std::make_unique<TFFichaVia>(&between, *controller, opConsulta, "28079", QString());
    ambrel::test::showActive(*card);
    const QPoint away = card->frameGeometry().center() - mainForm.frameGeometry().center();
    EXPECT_LE(away.manhattanLength(), 4);
    card.reset();
}

TEST_F(StreetCard, IsCentredAfterAMessageThatCameWhileItOpened) {
    QWidget mainForm;
    mainForm.setGeometry(40, 30, 700, 650);
    ambrel::test::showActive(mainForm);
    openCard(opConsulta, {}, "28000001"); // one that may not be modified
    card = std::make_unique<TFFichaVia>(&mainForm, *controller, opModificacion, "28079", QString());
    const ambrel::MessageShower scripted = ambrel::setMessageShower({});
    {
        ambrel::test::ModalScript dialogs;
        dialogs.expect("QMessageBox", [](QDialog& box) { QTest::keyClick(&box, Qt::Key_Escape); });
        ambrel::test::showActive(*card);
    }
    ambrel::setMessageShower(scripted);
    const QPoint away = card->frameGeometry().center() - mainForm.frameGeometry().center();
    EXPECT_LE(away.manhattanLength(), 4);
    card.reset();
}

TEST_F(StreetCard, EnterMovesOnThroughAllControls) {
    openCard(opModificacion);
    enter("EVecindad");
    for (const char* next :
         {"CBProvincia", "CBTipoVia", "DBEVia", "DBECodPostal", "DBEImparIni", "DBEImparFin", "DBEParIni",
          "DBEParFin", "BBAceptar", "BBCancelar", "EVecindad"}) {
        press(Qt::Key_Return);
        EXPECT_EQ(focused(), next);
    }
    EXPECT_TRUE(card->isVisible());
}

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
