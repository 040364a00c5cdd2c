// What TFMunicipiLista and TFBuscarMunicipios have in common, with real keys, clicks and tables.
#include <gtest/gtest.h>

#include <QApplication>
#include <QLayout>
#include <QPushButton>
#include <QTest>

#include "dialogs/DialogTexts.h"
#include "dialogs/MunicipalityListFixture.h"
#include "services/Confamb.h"
#include "services/TagProperty.h"
#include "support/ModalScript.h"
#include "support/ShownWindow.h"

namespace {

using namespace postal_tests;
using ambrel::test::child;

class MunicipalityLists : public MunicipalityListFixture,
                          public ::testing::WithParamInterface<MunicipalityDialog> {
protected:
    void open(const std::string& tag) { MunicipalityListFixture::open(GetParam(), tag); }
    [[nodiscard]] static bool isLista() { return GetParam() == MunicipalityDialog::Lista; }
};

INSTANTIATE_TEST_SUITE_P(Dialogs, MunicipalityLists,
                         ::testing::Values(MunicipalityDialog::Lista, MunicipalityDialog::Buscar),
                         [](const auto& which) {
                             return which.param == MunicipalityDialog::Lista ? "TFMunicipiLista"
                                                                             : "TFBuscarMunicipios";
                         });

TEST_P(MunicipalityLists, TextsHintsAndSizes) {
    open("NOMBRE");
    const QString form = isLista() ? "TFMunicipiLista" : "TFBuscarMunicipios";
    const QString accept = "Aceptar el municipio elegido y salir de la pantalla";
    ambrel::test::expectControls(
        *dialog,
        {{form, form, "Lista de municipios del I.N.E.", "", {640, 480}},
         {"GBCODINE", "QGroupBox", QStringLiteral("  Buscar por Código INE...  ")},
         {"ECODINE", "QLineEdit", "", QStringLiteral("Escriba el código INE del municipio a localizar")},
         {"GBCODPOSTAL", "QGroupBox", QStringLiteral("  Buscar por código postal...  ")},
         {"ECODPOSTAL", "QLineEdit", "",
          QStringLiteral("Escriba el código postal del municipio a localizar")},
         {"GBNOMBRE", "QGroupBox", "  Buscar por municipio...  "},
         {"ENOMBRE", "QLineEdit", "", "Buscar el nombre del municipio a localizar"},
         {"DBGMUNICIPI", "ambrel::DataGrid", "", isLista() ? "" : "Listado de municipios", {400, 200}},
         {"STAyuda", "QLabel",
          "Pulse la tecla TAB para cambiar la busqueda\nPulse INTRO para aceptar el municipio seleccionado"},
         {"BBAceptar", "QPushButton", "&Aceptar", accept, {88, 30}},
         {"BBCancelar", "QPushButton", "&Salir", "Salir de la pantalla sin elegir", {88, 30}},
         {"SBAyuda", "QStatusBar", ""}});
    EXPECT_EQ(dialog->minimumSize(), QSize(640, 480));
    EXPECT_EQ(grid().columnTitle(0), "I.N.E.");
    EXPECT_EQ(grid().columnTitle(1), "Postal");
    EXPECT_EQ(grid().columnCount(), 3);
    EXPECT_EQ(ambrel::tagOf(edit("ECODINE")), 0);
    EXPECT_EQ(ambrel::tagOf(edit("ECODPOSTAL")), 1);
    EXPECT_EQ(ambrel::tagOf(edit("ENOMBRE")), 2);
}

TEST_P(MunicipalityLists, GoesOnWhenARoutineEmptiesTheGlobal) {
    open("NOMBRE");
    DMMunicipi = nullptr; // as a routine called by a timer leaves it
    press(Qt::Key_Down);
    clickTitle(0);
    edit("ECODPOSTAL").setFocus();
    EXPECT_EQ(current("NOMBRE"), "BARCELONA");
    EXPECT_EQ(table().tag(), "CODPOSTAL");
}

TEST_P(MunicipalityLists, EveryWayOutHasItsModalResult) {
    make(GetParam(), "NOMBRE");
    ambrel::test::expectModalResults([this] { return makeDialog(); },
                                     {{"BBAceptar", 1}, {"BBCancelar", 2}, {"Escape", 2}, {"close box", 2}});
}

TEST_P(MunicipalityLists, MinimumGrowsWithTheFont) {
    make(GetParam(), "NOMBRE");
    QFont font = dialog->font();
    font.setPointSize(3 * font.pointSize());
    dialog->setFont(font);
    dialog->show();
    EXPECT_GT(dialog->minimumWidth(), 640);
    EXPECT_GE(dialog->width(), dialog->layout()->minimumSize().width());
}

TEST_P(MunicipalityLists, LargeFontOfAStyleSheetCutsNoCodeAndNoButton) {
    make(GetParam(), "NOMBRE");
    dialog->setStyleSheet("* { font-size: 28pt }");
    ambrel::test::showActive(*dialog);
    for (const int column : {0, 1}) {
        EXPECT_GT(grid().columnWidth(column), grid().fontMetrics().horizontalAdvance("00000")) << column;
    }
    EXPECT_GT(grid().columnWidth(2), 0);
    for (const char* const name : {"BBAceptar", "BBCancelar"}) {
        const auto& button = child<QPushButton>(*dialog, name);
        EXPECT_GE(button.width(), button.sizeHint().width()) << name;
    }
}

TEST_P(MunicipalityLists, ComingBackToTheScreenLeavesTheFocus) {
    open("NOMBRE");
    grid().setFocus();
    QShowEvent uncovered;
    QSpontaneKeyEvent::setSpontaneous(&uncovered);
    qApp->notify(dialog.get(), &uncovered);
    EXPECT_EQ(focused(), "DBGMUNICIPI");
}

TEST_P(MunicipalityLists, FocusGoesToTheEditOfTheActiveTag) {
    open("CODPOSTAL");
    EXPECT_EQ(focused(), "ECODPOSTAL");
    EXPECT_EQ(table().tag(), "CODPOSTAL");
}

TEST_P(MunicipalityLists, FocusGoesToTheNameInOrderOfName) {
    open("NOMBRE");
    EXPECT_EQ(focused(), "ENOMBRE");
    EXPECT_EQ(help(), "Buscar el nombre del municipio a localizar");
    EXPECT_EQ(table().tag(), "NOMBRE");
}

TEST_P(MunicipalityLists, FocusGoesToTheIneCodeInItsOrder) {
    open("COD_INE");
    EXPECT_EQ(focused(), "ECODINE");
}

TEST_P(MunicipalityLists, AnyOtherOrderLeavesTheFocusWhereItBegins) {
    open("");
    EXPECT_EQ(focused(), "ECODINE");
    EXPECT_EQ(table().tag(), "COD_INE") << "for it was entered";
}

TEST_P(MunicipalityLists, OpensOnTheCurrentRecord) {
    make(GetParam(), "NOMBRE");
    table().last();
    dialog->show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(dialog.get()));
    EXPECT_EQ(current("NOMBRE"), "ÑORA, LA");
    EXPECT_EQ(shown(2), "ÑORA, LA");
    EXPECT_EQ(shown(0), "30030");
    EXPECT_EQ(shown(1), "30830");
}

TEST_P(MunicipalityLists, RangeOfTheCallerStays) {
    make(GetParam(), "NOMBRE");
    table().setRange({{"NOMBRE", std::string("MADRID")}}, {{"NOMBRE", std::string("MADRID")}});
    dialog->show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(dialog.get()));
    EXPECT_EQ(grid().visibleRowCount(), 2);
}

TEST_P(MunicipalityLists, TabBetweenTheEditsSwitchesTheOrderAndKeepsTheRecord) {
    open("COD_INE");
    type(edit("ECODINE"), "28084");
    press(Qt::Key_Tab);
    EXPECT_EQ(focused(), "ECODPOSTAL");
    EXPECT_EQ(table().tag(), "CODPOSTAL");
    EXPECT_EQ(help(), "Escriba el código postal del municipio a localizar");
    press(Qt::Key_Tab);
    EXPECT_EQ(focused(), "ENOMBRE");
    EXPECT_EQ(table().tag(), "NOMBRE");
    EXPECT_EQ(shown(2), "MEJORADA DEL CAMPO");
    press(Qt::Key_Backtab);
    EXPECT_EQ(table().tag(), "CODPOSTAL");
}

TEST_P(MunicipalityLists, TabGoesThroughAllControlsFromTopToBottom) {
    open("COD_INE");
    for (const std::string next :
         {"ECODPOSTAL", "ENOMBRE", "DBGMUNICIPI", "BBAceptar", "BBCancelar", "ECODINE"}) {
        press(Qt::Key_Tab);
        EXPECT_EQ(focused(), next);
    }
}

TEST_P(MunicipalityLists, FocusColoursTheEditAndShowsItsHint) {
    open("COD_INE");
    const auto colour = [](const QWidget& box) { return box.palette().color(QPalette::Base); };
    const QColor normal = colour(edit("ENOMBRE"));
    EXPECT_EQ(help(), "Escriba el código INE del municipio a localizar");
    EXPECT_NE(colour(edit("ECODINE")), normal);
    edit("ENOMBRE").setFocus();
    EXPECT_EQ(colour(edit("ECODINE")), normal);
    EXPECT_NE(colour(edit("ENOMBRE")), normal);
    grid().setFocus();
    EXPECT_EQ(colour(edit("ENOMBRE")), normal);
    EXPECT_EQ(help(), isLista() ? "" : "Listado de municipios");
}

TEST_P(MunicipalityLists, ButtonsShowTheirHintsForFocusAndMouse) {
    open("COD_INE");
    auto& accept = child<QPushButton>(*dialog, "BBAceptar");
    auto& cancel = child<QPushButton>(*dialog, "BBCancelar");
    accept.setFocus();
    EXPECT_EQ(help(), "Aceptar el municipio elegido y salir de la pantalla");
    hover(cancel);
    EXPECT_EQ(help(), "Salir de la pantalla sin elegir");
    QTest::mouseMove(dialog->windowHandle(), QPoint(1, 1));
    EXPECT_EQ(help(), "") << "also for the button that still has the focus";
}

TEST_P(MunicipalityLists, TypingMovesTheGridByTheKeyOfTheEdit) {
    open("COD_INE");
    type(edit("ECODINE"), "28");
    EXPECT_EQ(shown(2), "ALPEDRETE");
    edit("ECODPOSTAL").setFocus();
    type(edit("ECODPOSTAL"), "28002");
    EXPECT_EQ(shown(1), "28002");
    edit("ENOMBRE").setFocus();
    type(edit("ENOMBRE"), "CORU");
    EXPECT_EQ(shown(2), "CORUÑA, A");
    edit("ENOMBRE").clear();
    type(edit("ENOMBRE"), QStringLiteral("Ñ"));
    EXPECT_EQ(shown(2), "ÑORA, LA");
}

TEST_P(MunicipalityLists, TextIsSoughtAsTypedWithoutCapitals) {
    open("NOMBRE");
    type(edit("ENOMBRE"), "madrid");
    EXPECT_EQ(edit("ENOMBRE").text(), "madrid");
    EXPECT_EQ(shown(2), "ÑORA, LA") << "the last one, for no name is in small letters";
}

TEST_P(MunicipalityLists, TypingABlankFirstLeavesTheEditEmptyAndThePositionUnchanged) {
    open("NOMBRE");
    type(edit("ENOMBRE"), "ME");
    edit("ENOMBRE").clear();
    type(edit("ENOMBRE"), " ");
    EXPECT_EQ(edit("ENOMBRE").text(), "");
    EXPECT_EQ(shown(2), "MEJORADA DEL CAMPO");
}

TEST_P(MunicipalityLists, MovingKeysInAnEditMoveTheGrid) {
    open("NOMBRE");
    QLineEdit& box = edit("ENOMBRE");
    QTest::keyClick(&box, Qt::Key_Up);
    EXPECT_EQ(shown(2), "ALPEDRETE") << "nothing before the first record";
    QTest::keyClick(&box, Qt::Key_Down);
    EXPECT_EQ(shown(2), "BARCELONA");
    QTest::keyClick(&box, Qt::Key_PageDown);
    EXPECT_EQ(shown(2), "ÑORA, LA");
    QTest::keyClick(&box, Qt::Key_Down);
    EXPECT_EQ(shown(2), "ÑORA, LA") << "nothing behind the last record";
    QTest::keyClick(&box, Qt::Key_Up);
    EXPECT_EQ(shown(2), "MEJORADA DEL CAMPO");
    QTest::keyClick(&box, Qt::Key_PageUp);
    EXPECT_EQ(shown(2), "ALPEDRETE");
    EXPECT_EQ(focused(), "ENOMBRE");
}

TEST_P(MunicipalityLists, TitleClickSwitchesTheOrderWithoutMovingTheFocus) {
    open("NOMBRE");
    clickTitle(0);
    EXPECT_EQ(table().tag(), "COD_INE");
    clickTitle(1);
    EXPECT_EQ(table().tag(), "CODPOSTAL");
    clickTitle(2);
    EXPECT_EQ(table().tag(), "NOMBRE");
    EXPECT_EQ(focused(), "ENOMBRE");
}

TEST_P(MunicipalityLists, NameTitleMentionsEntitiesOnlyWhileTheyAreShown) {
    open("NOMBRE");
    EXPECT_EQ(grid().columnTitle(2), "Nombre del municipio");
    dialog->hide();
    Config.EntidadesMenores = true;
    dialog->show();
    EXPECT_EQ(grid().columnTitle(2), "Nombre del municipio, [Entidad Mayor]");
}

TEST_P(MunicipalityLists, EntityRowsShowTheArrowForm) {
    Config.EntidadesMenores = true;
    open("NOMBRE");
    EXPECT_EQ(grid().columnTitle(2), "Nombre del municipio, [Entidad Mayor]");
    type(edit("ENOMBRE"), "LOS");
    EXPECT_EQ(shown(2), "LOS NEGRALES --> [ALPEDRETE]");
    EXPECT_EQ(shown(1), "28431");
}

TEST_P(MunicipalityLists, EntityRowsAreHiddenWhileTheSwitchIsOff) {
    open("NOMBRE");
    type(edit("ENOMBRE"), "LOS");
    EXPECT_EQ(shown(2), "MADRID");
    EXPECT_EQ(grid().visibleRowCount(), 7);
}

TEST_P(MunicipalityLists, ThirdColumnTakesTheRestAlsoAfterResizing) {
    open("NOMBRE");
    const auto rest = [this] { return grid().clientWidth() - grid().columnWidth(0) - grid().columnWidth(1); };
    EXPECT_GT(rest(), 300);
    EXPECT_EQ(grid().columnWidth(2), rest());
    const int narrow = grid().columnWidth(2);
    constexpr int more = 260;
    dialog->resize(dialog->width() + more, dialog->height());
    EXPECT_EQ(grid().columnWidth(2), rest());
    EXPECT_EQ(grid().columnWidth(2), narrow + more);
}

TEST_P(MunicipalityLists, NarrowerThanTheFirstTwoColumnsTheThirdOneHasNegativeWidth) {
    open("NOMBRE");
    grid().setColumnWidth(0, 500);
    grid().setColumnWidth(1, 500);
    dialog->resize(700, 500);
    EXPECT_EQ(grid().columnWidth(2), grid().clientWidth() - 1000);
    EXPECT_LT(grid().columnWidth(2), 0);
}

TEST_P(MunicipalityLists, ClosedTableShowsNothingAndKeysDoNoHarm) {
    make(GetParam(), "NOMBRE");
    table().close();
    dialog->show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(dialog.get()));
    EXPECT_EQ(grid().visibleRowCount(), 0);
    for (const char* const name : {"ECODINE", "ECODPOSTAL", "ENOMBRE"}) {
        edit(name).setFocus();
        type(edit(name), " M");
        for (const Qt::Key key : {Qt::Key_Up, Qt::Key_Down, Qt::Key_PageUp, Qt::Key_PageDown}) {
            QTest::keyClick(&edit(name), key);
        }
        EXPECT_EQ(edit(name).text(), "M");
    }
    clickTitle(0);
    EXPECT_FALSE(table().isOpen());
    EXPECT_TRUE(dialog->isVisible());
    table().open();
}

TEST_P(MunicipalityLists, TableStaysOpenOnTheChosenRecord) {
    open("NOMBRE");
    type(edit("ENOMBRE"), "ME");
    QTest::mouseClick(&child<QPushButton>(*dialog, "BBAceptar"), Qt::LeftButton);
    EXPECT_FALSE(dialog->isVisible());
    dialog.reset();
    EXPECT_TRUE(table().isOpen());
    EXPECT_EQ(current("NOMBRE"), "MEJORADA DEL CAMPO");
}

TEST_P(MunicipalityLists, DoubleClickAcceptsTheRow) {
    open("NOMBRE");
    doubleClickRow(1);
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(dialog->result(), 1);
    EXPECT_EQ(current("NOMBRE"), "BARCELONA");
}

} // namespace
