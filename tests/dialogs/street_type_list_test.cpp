// TFTipoViasLista with real keys and clicks.
#include "dialogs/SmallList.h"
#include "dialogs/TipoViasLista.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStatusBar>
#include <QTest>
#include <memory>
#include <utility>

#include "data/PostalTables.h"
#include "data/ViasDM.h"
#include "dialogs/DialogTexts.h"
#include "dialogs/common/DataGrid.h"
#include "support/ModalScript.h"
#include "support/ShownWindow.h"

namespace {

using ambrel::test::ansi;
using ambrel::test::child;
using ambrel::test::ModalScript;

/// The module of a street-type routine at work, with its table filled and open.
class StreetTypes {
public:
    StreetTypes() {
        DMVias = &module_;
        table.open();
        for (const auto& [code, name] :
             {std::pair("AV", "AVENIDA"), std::pair("CL", "CALLE"), std::pair("CM", "CAMINO, CARMEN"),
              std::pair("CÑ", "CAÑADA"), std::pair("PZ", "PLAZA"), std::pair("RD", "RONDA")}) {
            table.append();
            module_.tbTipo_ViaCODIGO.setText(ansi(code));
            module_.tbTipo_ViaNOMBRE.setText(ansi(name));
            table.post();
        }
        table.first();
    }
    ~StreetTypes() { DMVias = nullptr; }
    StreetTypes(const StreetTypes&) = delete;
    StreetTypes& operator=(const StreetTypes&) = delete;

private:
    TDMVias module_;

public:
    dbase::Dataset& table = module_.tbTipo_Via;
};

struct WithStreetTypes {
    StreetTypes types;
};

class StreetTypeList : public postal_tests::PostalTables,
                       protected WithStreetTypes,
                       protected dialog_tests::SmallList<TFTipoViasLista> {
protected:
    StreetTypeList() : SmallList("EBUSCA", "DBGTIPO_VIA") {}

    void show() { ambrel::test::showActive(list); }
    /// The grid's current row.
    [[nodiscard]] std::string current() const {
        const int row = grid.currentRow();
        return (grid.cellText(row, 0) + " " + grid.cellText(row, 1)).toStdString();
    }
};

TEST_F(StreetTypeList, WithoutOwnerTheActiveWindowIsTheParent) {
    QWidget window;
    ambrel::test::showActive(window);
    const TFTipoViasLista other;
    EXPECT_EQ(other.parentWidget(), &window);
}

TEST_F(StreetTypeList, HasItsCaptionsHintsSizesAndResults) {
    show();
    ambrel::test::expectControls(
        list, {{"TFTipoViasLista", "TFTipoViasLista", "Lista de tipos de vía", "", {350, 480}},
               {"GBTitulo", "QGroupBox", "  Lista de tipo de vías públicas  "},
               {"LTipoVia_", "QLabel", "&Tipo de vía:"},
               {"EBUSCA", "QLineEdit", "", "Escriba el nombre del tipo de vía a localizar"},
               {"DBGTIPO_VIA", "ambrel::DataGrid", ""},
               {"STAyuda", "QLabel",
                "Escriba la abreviatura del tipo de vía. Alt+A o doble clic en una línea para aceptarla."},
               {"BBAceptar", "QPushButton", "&Aceptar", "Aceptar el tipo elegido y salir de la pantalla"},
               {"BBCancelar", "QPushButton", "&Salir", "Salir de la pantalla sin elegir"},
               {"SBAyuda", "QStatusBar", ""}});
    EXPECT_EQ(list.minimumWidth(), 350);
    EXPECT_EQ(list.maximumWidth(), 350);
    EXPECT_EQ(child<QLabel>(list, "LTipoVia_").buddy(), &search);
    EXPECT_EQ(grid.columnCount(), 2);
    ambrel::test::expectModalResults([] { return std::make_unique<TFTipoViasLista>(); },
                                     {{"BBAceptar", 1}, {"BBCancelar", 2}, {"Escape", 2}, {"close box", 2}});
}

TEST_F(StreetTypeList, TheAbbreviationIsSearchedAlthoughTheHintSpeaksOfTheName) {
    show();
    type("C");
    EXPECT_EQ(current(), "CL CALLE");
    type("M");
    EXPECT_EQ(current(), "CM CAMINO, CARMEN");
    search.clear();
    type("AVENIDA"); // its first two letters fill the column
    EXPECT_EQ(current(), "AV AVENIDA");
    search.clear();
    type("PLAZA"); // PL
    EXPECT_EQ(current(), "PZ PLAZA");
}

TEST_F(StreetTypeList, TheTextIsSoughtAsTyped) {
    show();
    type("c"); // after all capitals
    EXPECT_EQ(current(), "RD RONDA");
}

TEST_F(StreetTypeList, AccentedLettersAreFound) {
    show();
    search.setText("C");
    type("Ñ");
    EXPECT_EQ(current(), "CÑ CAÑADA");
}

TEST_F(StreetTypeList, ALeadingBlankIsRemovedAndMovesNothing) {
    show();
    type("PZ");
    search.clear();
    type(" ");
    EXPECT_EQ(search.text(), "");
    EXPECT_EQ(current(), "PZ PLAZA");
    search.setText("  R ");
    press(Qt::Key_End);
    EXPECT_EQ(search.text(), "R ");
    EXPECT_EQ(current(), "RD RONDA");
}

TEST_F(StreetTypeList, TheArrowsAndPageKeysMoveAndStopAtTheEnds) {
    show();
    press(Qt::Key_Up);
    EXPECT_EQ(current(), "AV AVENIDA");
    press(Qt::Key_Down);
    EXPECT_EQ(current(), "CL CALLE");
    press(Qt::Key_PageDown);
    EXPECT_EQ(current(), "RD RONDA");
    press(Qt::Key_Down);
    EXPECT_EQ(current(), "RD RONDA");
    press(Qt::Key_Up);
    EXPECT_EQ(current(), "PZ PLAZA");
    press(Qt::Key_PageUp);
    EXPECT_EQ(current(), "AV AVENIDA");
}

TEST_F(StreetTypeList, EachKeyReadsTheRowsAgain) {
    show();
    {
        dbase::Dataset elsewhere("DB", "TIPO_VIA", "CODIGO");
        elsewhere.open();
        elsewhere.erase();
    }
    press(Qt::Key_End);
    EXPECT_EQ(current(), "CL CALLE");
}

TEST_F(StreetTypeList, EnteringTheSearchSelectsItsTag) {
    types.table.setTag("NOMBRE");
    show();
    EXPECT_EQ(types.table.tag(), "CODIGO");
}

TEST_F(StreetTypeList, GoesOnWhenARoutineEmptiesTheGlobal) {
    show();
    DMVias = nullptr; // as a routine called by a timer leaves it
    press(Qt::Key_Down);
    grid.setFocus();
    search.setFocus();
    EXPECT_EQ(current(), "CL CALLE");
}

TEST_F(StreetTypeList, EnterDoesNotAccept) {
    show();
    press(Qt::Key_Return);
    EXPECT_TRUE(list.isVisible());
    EXPECT_EQ(QApplication::focusWidget(), &search);
}

TEST_F(StreetTypeList, TheAnswerIsTheRowOnWhichTheTableStands) {
    ModalScript script;
    script.expect("TFTipoViasLista", [this](QDialog&) {
        type("CM");
        doubleClickCurrentRow();
    });
    EXPECT_EQ(list.exec(), 1);
    EXPECT_EQ(types.table.field("CODIGO").text(), "CM");
    EXPECT_TRUE(types.table.isOpen());
}

TEST_F(StreetTypeList, FocusColoursTheSearchAndShowsTheHints) {
    show();
    const QColor normal = list.palette().color(QPalette::Base);
    EXPECT_NE(search.palette().color(QPalette::Base), normal);
    EXPECT_EQ(help.currentMessage(), search.toolTip());
    press(Qt::Key_Tab);
    EXPECT_EQ(search.palette().color(QPalette::Base), normal);
    EXPECT_EQ(help.currentMessage(), "");
    accept.setFocus();
    EXPECT_EQ(help.currentMessage(), accept.toolTip());
}

TEST_F(StreetTypeList, TheSecondColumnTakesTheRestOfTheGrid) {
    show();
    EXPECT_EQ(grid.columnWidth(0) + grid.columnWidth(1), grid.clientWidth());
    const int width = grid.columnWidth(1);
    grid.setColumnWidth(0, grid.columnWidth(0) + 10);
    list.resize(350, 600);
    QApplication::processEvents();
    EXPECT_EQ(grid.columnWidth(1), width - 10);
}

TEST_F(StreetTypeList, GrowsWithTheFontSoThatNothingIsCut) {
    QFont font = list.font();
    font.setPointSize(font.pointSize() * 2);
    list.setFont(font);
    show();
    EXPECT_GT(list.width(), 350);
    EXPECT_EQ(list.minimumWidth(), list.maximumWidth());
    EXPECT_GE(help.width(), help.fontMetrics().horizontalAdvance(search.toolTip()) + 18);
    EXPECT_GE(help.height(), help.fontMetrics().height());
    EXPECT_GT(grid.columnWidth(0), grid.fontMetrics().horizontalAdvance(grid.columnTitle(0)));
    EXPECT_GE(accept.width(), accept.sizeHint().width());
}

} // namespace
