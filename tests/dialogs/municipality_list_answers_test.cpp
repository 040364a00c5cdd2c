// The differences between TFMunicipiLista, TFBuscarMunicipios and TFMunicipiListaMJ: Enter, answer, orders.
#include <gtest/gtest.h>

#include <QPushButton>
#include <QTest>

#include "dialogs/DialogTexts.h"
#include "dialogs/MunicipalityListFixture.h"
#include "services/TagProperty.h"
#include "support/ModalScript.h"
#include "support/ShownWindow.h"

namespace {

using namespace postal_tests;
using ambrel::setTag;
using ambrel::tagOf;
using ambrel::test::child;

class MunicipiLista : public MunicipalityListFixture {
protected:
    void open(const std::string& tag) { MunicipalityListFixture::open(MunicipalityDialog::Lista, tag); }
};

TEST_F(MunicipiLista, EnterMovesOnWhateverHasTheFocusAndNeverAccepts) {
    open("COD_INE");
    for (const std::string next :
         {"ECODPOSTAL", "ENOMBRE", "DBGMUNICIPI", "BBAceptar", "BBCancelar", "ECODINE"}) {
        press(Qt::Key_Return);
        EXPECT_EQ(focused(), next);
    }
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_EQ(table().tag(), "COD_INE");
}

TEST_F(MunicipiLista, EnterSwitchesTheOrderAsTabDoes) {
    open("COD_INE");
    QTest::keyClick(&edit("ECODINE"), Qt::Key_Enter, Qt::KeypadModifier);
    EXPECT_EQ(table().tag(), "CODPOSTAL");
}

TEST_F(MunicipiLista, DoubleClickGivesTheModalResultOne) {
    make(MunicipalityDialog::Lista, "NOMBRE");
    ambrel::test::ModalScript script;
    script.expect("TFMunicipiLista", [this](QDialog&) { doubleClickRow(2); });
    EXPECT_EQ(dialog->exec(), 1);
    EXPECT_EQ(current("NOMBRE"), "CORUÑA, A");
}

TEST_F(MunicipiLista, OwnerIsTheParent) {
    QWidget owner;
    make(MunicipalityDialog::Lista, "NOMBRE");
    EXPECT_EQ(dialog->parentWidget(), nullptr) << "no window is active";
    ambrel::test::showActive(owner);
    const std::unique_ptr<QDialog> second = makeDialog();
    EXPECT_EQ(second->parentWidget(), &owner) << "the active window stands in for an owner";
    second->setParent(nullptr);
}

class BuscarMunicipios : public MunicipalityListFixture {
protected:
    void open(const std::string& tag) { MunicipalityListFixture::open(MunicipalityDialog::Buscar, tag); }
    void click(const char* button) {
        QTest::mouseClick(&child<QPushButton>(*dialog, button), Qt::LeftButton);
    }
};

// Named like the remark at the class: the difference from the other lists is intended.
TEST_F(BuscarMunicipios, AnswersByItsTag) {
    open("NOMBRE");
    EXPECT_EQ(tagOf(*dialog), 0);
    click("BBAceptar");
    EXPECT_EQ(tagOf(*dialog), 1);
    EXPECT_FALSE(dialog->isVisible());
}

TEST_F(BuscarMunicipios, DoubleClickSetsTheTagAndCloses) {
    open("NOMBRE");
    doubleClickRow(1);
    EXPECT_EQ(tagOf(*dialog), 1);
    EXPECT_FALSE(dialog->isVisible());
}

TEST_F(BuscarMunicipios, CancelSetsTheTagToZeroAndCloses) {
    open("NOMBRE");
    setTag(*dialog, 7);
    click("BBCancelar");
    EXPECT_EQ(tagOf(*dialog), 0);
    EXPECT_FALSE(dialog->isVisible());
}

TEST_F(BuscarMunicipios, EscapeClicksCancel) {
    open("NOMBRE");
    setTag(*dialog, 7);
    QTest::keyClick(&edit("ENOMBRE"), Qt::Key_Escape);
    EXPECT_EQ(tagOf(*dialog), 0);
    EXPECT_FALSE(dialog->isVisible());
}

TEST_F(BuscarMunicipios, CloseBoxLeavesTheTagAsItWas) {
    open("NOMBRE");
    setTag(*dialog, 7);
    dialog->close();
    EXPECT_EQ(tagOf(*dialog), 7);
    EXPECT_EQ(dialog->result(), 2);
}

TEST_F(BuscarMunicipios, CloseBoxOfAFreshDialogReadsAsCancelled) {
    open("NOMBRE");
    dialog->close();
    EXPECT_EQ(tagOf(*dialog), 0);
}

TEST_F(BuscarMunicipios, ShowsTheControllersTableOnlyWhenShown) {
    make(MunicipalityDialog::Buscar, "NOMBRE");
    grid().refresh();
    EXPECT_EQ(grid().visibleRowCount(), 0);
    ambrel::test::showActive(*dialog);
    EXPECT_EQ(grid().visibleRowCount(), 7);
}

TEST_F(BuscarMunicipios, EnterInAnEditDoesNothing) {
    open("NOMBRE");
    QTest::keyClick(&edit("ENOMBRE"), Qt::Key_Return);
    EXPECT_EQ(focused(), "ENOMBRE");
    EXPECT_TRUE(dialog->isVisible());
}

TEST_F(BuscarMunicipios, EnterOnTheAcceptButtonAccepts) {
    open("NOMBRE");
    child<QPushButton>(*dialog, "BBAceptar").setFocus();
    QTest::keyClick(dialog->focusWidget(), Qt::Key_Return);
    EXPECT_EQ(tagOf(*dialog), 1);
}

class MunicipiListaMJ : public MunicipalityListFixture {
protected:
    void open(const std::string& tag = "POBLLITE") {
        MunicipalityListFixture::open(MunicipalityDialog::ListaMJ, tag);
    }
};

TEST_F(MunicipiListaMJ, TextsHintsAndSizes) {
    open();
    ambrel::test::expectControls(
        *dialog, {{"TFMunicipiListaMJ", "TFMunicipiListaMJ", "Lista de municipios", "", {640, 480}},
                  {"GBNOMBRE", "QGroupBox", "  Buscar por municipio...  "},
                  {"ENOMBRE", "QLineEdit", "", "Buscar el nombre del municipio a localizar", {400, 20}},
                  {"DBGMUNICIMJ", "ambrel::DataGrid", "", "Listado de municipios", {400, 200}},
                  {"STAyuda", "QLabel",
                   "Escriba el comienzo del nombre del municipio\nPulse Alt+A, o dos veces sobre el "
                   "municipio, para aceptarlo"},
                  {"BBAceptar",
                   "QPushButton",
                   "&Aceptar",
                   "Aceptar el municipio elegido y salir de la pantalla",
                   {88, 30}},
                  {"BBCancelar", "QPushButton", "&Salir", "Salir de la pantalla sin elegir", {88, 30}},
                  {"SBAyuda", "QStatusBar", ""}});
    EXPECT_EQ(dialog->minimumSize(), QSize(640, 480));
    EXPECT_EQ(grid().columnCount(), 3);
    EXPECT_EQ(grid().columnTitle(0), "Cod. Mun");
    EXPECT_EQ(grid().columnTitle(1), "Nombre del municipio");
    EXPECT_EQ(grid().columnTitle(2), "Provincia");
    EXPECT_EQ(grid().columnWidth(2), grid().clientWidth() - grid().columnWidth(0) - grid().columnWidth(1));
}

TEST_F(MunicipiListaMJ, LargeFontCutsNoNameAndNoButton) {
    const QString longName = "VILLARCAYO DE MERINDAD DE CASTILLA LA VI";
    make(MunicipalityDialog::ListaMJ, "POBLLITE");
    dialog->setStyleSheet("* { font-size: 24pt }");
    ambrel::test::showActive(*dialog);
    const QFontMetrics font = grid().fontMetrics();
    EXPECT_GT(grid().columnWidth(0), font.horizontalAdvance("Cod. Mun"));
    EXPECT_GT(grid().columnWidth(1), font.horizontalAdvance(longName));
    EXPECT_GT(grid().columnWidth(2), font.horizontalAdvance("SANTA CRUZ DE TENERIF"));
    for (const char* const name : {"BBAceptar", "BBCancelar"}) {
        const auto& button = child<QPushButton>(*dialog, name);
        EXPECT_GE(button.width(), button.sizeHint().width()) << name;
    }
}

TEST_F(MunicipiListaMJ, GoesOnWhenARoutineEmptiesTheGlobal) {
    open();
    DMMunicipi = nullptr; // as a routine called by a timer leaves it
    QTest::keyClick(&edit("ENOMBRE"), Qt::Key_Down);
    clickTitle(1);
    EXPECT_EQ(current("POBLLITE"), "MADRID");
}

TEST_F(MunicipiListaMJ, EveryWayOutHasItsModalResult) {
    make(MunicipalityDialog::ListaMJ, "POBLLITE");
    ambrel::test::expectModalResults([this] { return makeDialog(); },
                                     {{"BBAceptar", 1}, {"BBCancelar", 2}, {"Escape", 2}, {"close box", 2}});
}

TEST_F(MunicipiListaMJ, BrowsesNamesWithTheirProvince) {
    open();
    EXPECT_EQ(focused(), "ENOMBRE");
    type(edit("ENOMBRE"), "M");
    EXPECT_EQ(shown(1), "MADRID");
    EXPECT_EQ(shown(2), "MADRID");
    QTest::keyClick(&edit("ENOMBRE"), Qt::Key_PageUp);
    EXPECT_EQ(shown(2), "BARCELONA");
    edit("ENOMBRE").clear();
    type(edit("ENOMBRE"), QStringLiteral(" Ñ"));
    EXPECT_EQ(shown(1), "ÑORA, LA");
}

TEST_F(MunicipiListaMJ, EnteringTheEditAndEveryTitleSelectTheOrderOfNames) {
    open("");
    EXPECT_EQ(table().tag(), "POBLLITE") << "the edit is the first control, and was entered";
    for (int column = 0; column < 3; ++column) {
        table().setTag("");
        clickTitle(column);
        EXPECT_EQ(table().tag(), "POBLLITE") << column;
    }
}

TEST_F(MunicipiListaMJ, DoubleClickAcceptsTheRow) {
    open();
    doubleClickRow(1);
    EXPECT_EQ(dialog->result(), 1);
    EXPECT_EQ(current("POBLLITE"), "MADRID");
}

TEST_F(MunicipiListaMJ, EnterInTheEditDoesNothing) {
    open();
    QTest::keyClick(&edit("ENOMBRE"), Qt::Key_Return);
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_EQ(focused(), "ENOMBRE");
}

TEST_F(MunicipiListaMJ, ClosedTableShowsNothingAndKeysDoNoHarm) {
    make(MunicipalityDialog::ListaMJ, "POBLLITE");
    table().close();
    ambrel::test::showActive(*dialog);
    type(edit("ENOMBRE"), "M");
    QTest::keyClick(&edit("ENOMBRE"), Qt::Key_PageDown);
    EXPECT_EQ(grid().visibleRowCount(), 0);
    EXPECT_TRUE(dialog->isVisible());
}

} // namespace
