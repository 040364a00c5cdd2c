// TFProvList with real keys and clicks.
#include "dialogs/ProvList.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStatusBar>
#include <QTest>
#include <memory>

#include "data/PostalTables.h"
#include "dialogs/DialogTexts.h"
#include "dialogs/SmallList.h"
#include "dialogs/common/DataGrid.h"
#include "support/ModalScript.h"
#include "support/ScriptedMessages.h"
#include "support/ShownWindow.h"

namespace {

using ambrel::test::child;
using ambrel::test::ModalScript;

class ProvinceList : public postal_tests::PostalTables, protected dialog_tests::SmallList<TFProvList> {
protected:
    ProvinceList() : SmallList("E_BUSQUEDA", "DBGProvincias") {
        addProvinces({{"001", "ALAVA/ARABA"},
                      {"002", "ALBACETE"},
                      {"007", "BALEARS, ILLES"},
                      {"008", "BARCELONA"},
                      {"015", "CORUÑA, A"},
                      {"028", "MADRID"},
                      {"048", "BIZKAIA"},
                      {"049", "ZAMORA"}});
        addCountry("201", "FR", "FRANCIA");
        addCountry("202", "DE", "ALEMANIA");
    }

    static void addCountry(const char* code, const char* secondCode, const char* name) {
        dbase::Dataset table("DB", "PROVIN");
        table.open();
        table.append();
        table.field("CODIGO").setText(code);
        table.field("COD_198").setText(secondCode);
        table.field("PROVINCIA").setText(name);
        table.field("GRUPO").setInteger(3);
        table.post();
    }

    /// Shows the list as its caller configures it.
    void show(int code = 0, int group = 1) {
        list.TProvin.open();
        list.Configura("Elegir", "Nacimiento del declarante", code, group);
        ambrel::test::showActive(list);
    }

    /// The grid's current row.
    [[nodiscard]] std::string current() const { return grid.cellText(grid.currentRow(), 0).toStdString(); }
};

TEST_F(ProvinceList, WithoutOwnerTheActiveWindowIsTheParent) {
    QWidget window;
    ambrel::test::showActive(window);
    const TFProvList other;
    EXPECT_EQ(other.parentWidget(), &window);
}

TEST_F(ProvinceList, HasItsCaptionsHintsSizesAndResults) {
    list.TProvin.open();
    ambrel::test::showActive(list);
    ambrel::test::expectControls(
        list,
        {{"TFProvList", "TFProvList", "Lista de provincias", "", {350, 480}},
         {"GBTitulo", "QGroupBox", "Nacimiento"},
         {"LProvincia_", "QLabel", "&Provincia:"},
         {"E_BUSQUEDA", "QLineEdit", "", "Escriba el nombre de la provincia a localizar"},
         {"DBGProvincias", "ambrel::DataGrid", "", "Listado de provincias"},
         {"STAyuda", "QLabel",
          "Escriba un código o un nombre en mayúsculas. Alt+A o doble clic en una línea para aceptarla."},
         {"BBAceptar", "QPushButton", "&Aceptar", "Aceptar la línea elegida y salir de la pantalla"},
         {"BBCancelar", "QPushButton", "&Salir", "Salir de la pantalla sin elegir"},
         {"SBAyuda", "QStatusBar", ""}});
    EXPECT_EQ(list.minimumWidth(), 350);
    EXPECT_EQ(list.maximumWidth(), 350);
    EXPECT_EQ(child<QLabel>(list, "LProvincia_").buddy(), &search);
    EXPECT_EQ(grid.columnCount(), 1);
    ambrel::test::expectModalResults(
        [] {
            auto fresh = std::make_unique<TFProvList>();
            fresh->TProvin.open();
            return fresh;
        },
        {{"BBAceptar", 1}, {"BBCancelar", 2}, {"Escape", 2}, {"close box", 2}});
}

TEST_F(ProvinceList, AltKeysPressTheButtons) {
    list.TProvin.open();
    for (const auto& [key, result] : {std::pair(Qt::Key_A, 1), std::pair(Qt::Key_S, 2)}) {
        ModalScript script;
        script.expect("TFProvList", [this, key = key](QDialog&) {
            QTest::keyClick(&search, key, Qt::AltModifier);
            EXPECT_TRUE(QTest::qWaitFor([this] { return !list.isVisible(); }));
        });
        EXPECT_EQ(list.exec(), result);
    }
}

TEST_F(ProvinceList, ConfiguraNamesTheWindowItsFrameAndTheSearch) {
    show(0, 1);
    EXPECT_EQ(list.windowTitle(), "Elegir");
    EXPECT_EQ(child<QGroupBox>(list, "GBTitulo").title(), "Nacimiento del declarante");
    EXPECT_EQ(child<QLabel>(list, "LProvincia_").text(), "Provincia");
    list.Configura("Elegir", "Residencia", 0, 3);
    EXPECT_EQ(child<QLabel>(list, "LProvincia_").text(), "País");
}

TEST_F(ProvinceList, CodeZeroShowsEveryTerritoryWhateverTheGroup) {
    for (const int group : {1, 2, 3}) {
        list.TProvin.open();
        list.Configura("", "", 0, group);
        EXPECT_EQ(list.TProvin.filter(), "");
        list.TProvin.last();
        EXPECT_EQ(list.TProvinCODIGO.text(), "202");
        EXPECT_EQ(search.text(), "");
        list.TProvin.close();
    }
}

// The text 8 sorts after every code of three digits, such as 008, so that the last province stays current.
TEST_F(ProvinceList, Code8AndGroup1FilterAndSeekTheText8AmongThreeCharacterCodes) {
    show(8, 1);
    EXPECT_EQ(list.TProvin.filter(), "GRUPO = 1");
    EXPECT_EQ(current(), "049.- ZAMORA");
    EXPECT_EQ(search.text(), "");
    EXPECT_EQ(child<QLabel>(list, "LProvincia_").text(), "Provincia");
}

TEST_F(ProvinceList, ASeekThatFindsACodeAtOrAfterTheTextPutsItIntoTheSearch) {
    addProvinces({{"810", "TERRITORIO A"}, {"82", "TERRITORIO B"}});
    show(8, 1);
    EXPECT_EQ(current(), "810.- TERRITORIO A");
    EXPECT_EQ(search.text(), "8");
}

TEST_F(ProvinceList, TheCodeInTheSearchIsSelectedWhenTheListOpens) {
    addCountry("8", "", "OTRA");
    show(8, 3);
    ASSERT_EQ(search.text(), "8");
    EXPECT_TRUE(search.hasFocus());
    EXPECT_EQ(search.selectedText(), "8");
    QTest::keyClick(&search, Qt::Key_F);
    EXPECT_EQ(search.text(), "f") << "what is typed first replaces it";
}

TEST_F(ProvinceList, Group3ShowsItsSecondCodeInBracketsBetweenCodeAndName) {
    show(2, 3);
    EXPECT_EQ(current(), "201.- [FR]FRANCIA");
    EXPECT_EQ(search.text(), "2");
    press(Qt::Key_Down);
    EXPECT_EQ(current(), "202.- [DE]ALEMANIA");
}

TEST_F(ProvinceList, UpperCaseBAsTheFirstCharacterSwitchesToNameOrderAndSeeksB) {
    show();
    type("B");
    EXPECT_EQ(list.TProvin.tag(), "ALFABETICO");
    EXPECT_EQ(current(), "007.- BALEARS, ILLES");
    type("I");
    EXPECT_EQ(current(), "048.- BIZKAIA");
    press(Qt::Key_Down);
    EXPECT_EQ(current(), "015.- CORUÑA, A");
}

TEST_F(ProvinceList, LowerCaseLettersDoNotSwitchTheOrder) {
    show();
    type("b");
    EXPECT_EQ(search.text(), "b");
    EXPECT_EQ(list.TProvin.tag(), "CODIGO");
    EXPECT_EQ(current(), "001.- ALAVA/ARABA");
}

TEST_F(ProvinceList, AnyOtherSingleCharacterLeavesTheOrderAsItIs) {
    show();
    type("Ñ");
    EXPECT_EQ(search.text(), "Ñ");
    EXPECT_EQ(list.TProvin.tag(), "CODIGO");
    search.clear();
    type("M");
    search.clear();
    type("-");
    EXPECT_EQ(list.TProvin.tag(), "ALFABETICO");
}

TEST_F(ProvinceList, OnlyASingleCharacterChoosesTheOrder) {
    show();
    search.setText("2");
    type("B"); // the second one
    EXPECT_EQ(list.TProvin.tag(), "CODIGO");
    EXPECT_EQ(current(), "001.- ALAVA/ARABA");
}

TEST_F(ProvinceList, ADigitSwitchesBackToCodeOrderAndIsSoughtAsANumber) {
    show();
    type("Z");
    EXPECT_EQ(current(), "049.- ZAMORA");
    search.clear();
    type("8");
    EXPECT_EQ(list.TProvin.tag(), "CODIGO");
    EXPECT_EQ(current(), "008.- BARCELONA");
    type("9"); // 89 is between 049 and 201
    EXPECT_EQ(current(), "201.- [FR]FRANCIA");
}

TEST_F(ProvinceList, TheOrderChangesInsideTheFilteredGroup) {
    show(1, 3);
    search.clear();
    type("A");
    EXPECT_EQ(current(), "202.- [DE]ALEMANIA");
}

TEST_F(ProvinceList, ANameIsSoughtAsTyped) {
    show();
    type("Ba"); // small letters come after all capitals
    EXPECT_EQ(current(), "015.- CORUÑA, A");
}

TEST_F(ProvinceList, ATextThatIsNoNumberInCodeOrderMovesNothingAndShowsNoMessage) {
    show();
    type("28");
    EXPECT_EQ(current(), "028.- MADRID");
    for (const char* text : {"2a", "MADRID", "1.5", "99999999999", "-", " "}) {
        search.setText(text);
        press(Qt::Key_End);
        EXPECT_EQ(current(), "028.- MADRID") << text;
    }
}

TEST_F(ProvinceList, ANumberThatNoCodeCanHoldMovesNothingAndShowsNoMessage) {
    const ambrel::test::ScriptedMessages none;
    show();
    type("28");
    for (const char* text : {"1234", "-123", "2147483647", "-2147483648", "0001234"}) {
        search.setText(text);
        press(Qt::Key_End);
        EXPECT_EQ(current(), "028.- MADRID") << text;
    }
    search.setText("0008");
    press(Qt::Key_End);
    EXPECT_EQ(current(), "008.- BARCELONA") << "leading zeros count for nothing";
}

TEST_F(ProvinceList, ATextThatTheTablesCannotHoldMovesNothing) {
    show();
    type("M");
    search.setText(QStringLiteral("Łódź"));
    press(Qt::Key_End);
    EXPECT_EQ(current(), "028.- MADRID");
}

TEST_F(ProvinceList, AnEmptyTextMovesNothingInCodeOrderAndGoesToTheFirstNameInNameOrder) {
    show();
    type("8");
    press(Qt::Key_Backspace);
    EXPECT_EQ(search.text(), "");
    EXPECT_EQ(current(), "008.- BARCELONA");
    type("M");
    EXPECT_EQ(current(), "028.- MADRID");
    press(Qt::Key_Backspace);
    EXPECT_EQ(current(), "001.- ALAVA/ARABA");
}

TEST_F(ProvinceList, UpAndDownMoveByOneRowAndStopAtTheEnds) {
    show();
    press(Qt::Key_Up);
    EXPECT_EQ(current(), "001.- ALAVA/ARABA");
    press(Qt::Key_Down);
    EXPECT_EQ(current(), "002.- ALBACETE");
    press(Qt::Key_Up);
    EXPECT_EQ(current(), "001.- ALAVA/ARABA");
    list.TProvin.last();
    press(Qt::Key_Down);
    EXPECT_EQ(current(), "202.- [DE]ALEMANIA");
}

TEST_F(ProvinceList, UpAndDownDoNotSeekTheText) {
    show();
    type("28");
    press(Qt::Key_Down);
    EXPECT_EQ(current(), "048.- BIZKAIA");
}

TEST_F(ProvinceList, PageUpAndPageDownSeekTheTextLikeAnyOtherKey) {
    show();
    type("28");
    for (const Qt::Key key : {Qt::Key_PageUp, Qt::Key_PageDown}) {
        list.TProvin.first();
        press(key);
        EXPECT_EQ(current(), "028.- MADRID");
    }
}

TEST_F(ProvinceList, EnterMovesTheFocusOnWhateverHasItAndNeverAccepts) {
    show();
    QWidget* const round[] = {&search, &grid, &accept, &cancel, &search};
    for (QWidget* const control : round) {
        QWidget* const focused = QApplication::focusWidget();
        ASSERT_TRUE(focused);
        EXPECT_TRUE(focused == control || control->isAncestorOf(focused))
            << qPrintable(control->objectName());
        QTest::keyClick(focused, Qt::Key_Return);
        EXPECT_TRUE(list.isVisible());
    }
    EXPECT_EQ(list.chosenCode(), 0);
}

TEST_F(ProvinceList, AcceptingFillsTheThreeResults) {
    list.TProvin.open();
    list.Configura("", "", 0, 3);
    ModalScript script;
    script.expect("TFProvList", [this](QDialog&) {
        type("201");
        QTest::mouseClick(&accept, Qt::LeftButton);
    });
    EXPECT_EQ(list.exec(), 1);
    EXPECT_EQ(list.chosenCode(), 201);
    EXPECT_EQ(list.chosenGroup(), 3);
    EXPECT_EQ(list.chosenName(), "FRANCIA");
    EXPECT_TRUE(list.TProvin.isOpen());
}

TEST_F(ProvinceList, ADoubleClickFillsTheResultsAsTheButtonDoes) {
    list.TProvin.open();
    ModalScript script;
    script.expect("TFProvList", [this](QDialog&) {
        type("C");
        doubleClickCurrentRow();
    });
    EXPECT_EQ(list.exec(), 1);
    EXPECT_EQ(list.chosenCode(), 15);
    EXPECT_EQ(list.chosenGroup(), 1);
    EXPECT_EQ(list.chosenName(), "CORUÑA, A");
}

TEST_F(ProvinceList, LeavingFillsNoResult) {
    list.TProvin.open();
    ModalScript script;
    script.expect("TFProvList", [this](QDialog&) {
        type("28");
        press(Qt::Key_Escape);
    });
    EXPECT_EQ(list.exec(), 2);
    EXPECT_EQ(list.chosenCode(), 0);
    EXPECT_EQ(list.chosenName(), "");
}

TEST_F(ProvinceList, AcceptingAnEmptyListGivesZeroes) {
    list.TProvin.open();
    list.Configura("", "", 8, 7);
    ModalScript script;
    script.expect("TFProvList", [this](QDialog&) { accept.click(); });
    EXPECT_EQ(list.exec(), 1);
    EXPECT_EQ(list.chosenCode(), 0);
    EXPECT_EQ(list.chosenGroup(), 0);
    EXPECT_EQ(list.chosenName(), "");
}

TEST_F(ProvinceList, FocusColoursTheSearchAndShowsTheHintOfWhateverHasIt) {
    show();
    const QColor normal = list.palette().color(QPalette::Base);
    EXPECT_NE(search.palette().color(QPalette::Base), normal);
    EXPECT_EQ(help.currentMessage(), search.toolTip());
    press(Qt::Key_Tab);
    EXPECT_EQ(search.palette().color(QPalette::Base), normal);
    EXPECT_EQ(help.currentMessage(), "Listado de provincias");
    accept.setFocus();
    EXPECT_EQ(help.currentMessage(), accept.toolTip());
    cancel.setFocus();
    EXPECT_EQ(help.currentMessage(), cancel.toolTip());
}

TEST_F(ProvinceList, TheColumnTakesTheWidthOfTheGrid) {
    show();
    EXPECT_EQ(grid.columnWidth(0), grid.clientWidth());
    EXPECT_GT(grid.columnWidth(0), 250);
    list.resize(350, 700);
    QApplication::processEvents();
    EXPECT_EQ(list.height(), 700);
    EXPECT_EQ(grid.columnWidth(0), grid.clientWidth());
}

TEST_F(ProvinceList, TheDialogIsAsWideAsALongHeadingNeeds) {
    show();
    EXPECT_EQ(list.width(), 350);
    list.Configura("", "Provincia o país de nacimiento de la persona que firma la declaración", 0, 1);
    QApplication::processEvents();
    EXPECT_GT(list.width(), 350);
    EXPECT_EQ(list.minimumWidth(), list.maximumWidth());
    EXPECT_EQ(grid.columnWidth(0), grid.clientWidth());
}

} // namespace
