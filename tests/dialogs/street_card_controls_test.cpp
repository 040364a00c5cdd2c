// TFFichaVia: its captions, its boxes, its place on the screen and the way through its controls.
#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QStatusBar>
#include <QTest>

#include "dialogs/DialogTexts.h"
#include "dialogs/StreetCardForm.h"
#include "support/ModalScript.h"
#include "support/ShownWindow.h"

namespace {

using StreetCard = postal_tests::StreetCardForm;
using ambrel::test::child;

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

} // namespace
