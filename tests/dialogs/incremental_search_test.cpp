// The search while typing, with a real edit, its key releases and a real table.
#include "dialogs/common/IncrementalSearch.h"

#include <gtest/gtest.h>

#include <QLineEdit>
#include <QTest>
#include <QVBoxLayout>

#include "data/PostalTables.h"
#include "dbase/dataset/data_source.h"
#include "dialogs/common/DataGrid.h"
#include "services/KeyUpEvents.h"
#include "services/Text.h"
#include "support/ShownWindow.h"
#include "support/Typing.h"

namespace {

class IncrementalSearch : public postal_tests::PostalTables {
protected:
    void SetUp() override {
        addMunicipalities({{"28079", "28001", "MADRID"},
                           {"28010", "28430", "ALPEDRETE"},
                           {"15030", "15001", "CORUÑA, A"},
                           {"08019", "08001", "BARCELONA"},
                           {"28084", "28840", "MEJORADA DEL CAMPO"},
                           {"44160", "44100", "ÑORA, LA"}});
        table.setTag("NOMBRE");
        table.open();
        auto* const layout = new QVBoxLayout(&window);
        layout->addWidget(&edit);
        layout->addWidget(&grid);
        grid.setColumns({{.field = "NOMBRE", .title = "Nombre"}});
        grid.setDataSource(&source);
        ambrel::KeyUpEvents::watch(&edit, [this](std::uint16_t& key, Qt::KeyboardModifiers) {
            ambrel::searchWhileTyping(edit, key, table, keyField, grid);
        });
        ambrel::test::showActive(window);
        edit.setFocus();
    }
    void TearDown() override {
        grid.setDataSource(nullptr);
        grid.setParent(nullptr);
        edit.setParent(nullptr);
    }

    void type(const QString& text) { ambrel::test::typeInto(edit, text); }
    void press(Qt::Key key) { QTest::keyClick(&edit, key); }
    [[nodiscard]] QString name() { return ambrel::fromWindows1252(table.field("NOMBRE").text()); }

    dbase::Dataset table{"DB", "MUNICIPI"};
    dbase::DataSource source{&table};
    std::string keyField = "NOMBRE";
    QWidget window;
    QLineEdit edit;
    ambrel::DataGrid grid;
};

TEST_F(IncrementalSearch, TypingLandsOnTheFirstRecordAtOrAfterTheText) {
    type("M");
    EXPECT_EQ(name(), "MADRID");
    type("E");
    EXPECT_EQ(name(), "MEJORADA DEL CAMPO");
    press(Qt::Key_Backspace);
    EXPECT_EQ(name(), "MADRID");
    edit.clear();
    type("C");
    EXPECT_EQ(name(), QStringLiteral("CORUÑA, A"));
    type("A");
    EXPECT_EQ(name(), QStringLiteral("CORUÑA, A")) << "no name begins with CA; this is the next one";
}

TEST_F(IncrementalSearch, GridShowsTheRecordFound) {
    type("ME");
    ASSERT_GE(grid.currentRow(), 0);
    EXPECT_EQ(grid.cellText(grid.currentRow(), 0), "MEJORADA DEL CAMPO");
}

TEST_F(IncrementalSearch, TypingLettersOfTheTablesCodePage) {
    type(QStringLiteral("Ñ"));
    EXPECT_EQ(name(), QStringLiteral("ÑORA, LA"));
    edit.clear();
    type(QStringLiteral("CORUÑ"));
    EXPECT_EQ(name(), QStringLiteral("CORUÑA, A"));
}

TEST_F(IncrementalSearch, TextIsSoughtAsTypedWithoutCapitals) {
    type("b");
    EXPECT_EQ(edit.text(), "b");
    EXPECT_EQ(name(), QStringLiteral("ÑORA, LA")) << "small letters come behind the capitals";
}

TEST_F(IncrementalSearch, TextAfterTheLastKeyLandsOnTheLastRecord) {
    type(QStringLiteral("ÑU"));
    EXPECT_EQ(name(), QStringLiteral("ÑORA, LA"));
}

TEST_F(IncrementalSearch, TypingABlankFirstLeavesTheEditEmptyAndThePositionUnchanged) {
    type("ME");
    edit.clear();
    type(" ");
    EXPECT_EQ(edit.text(), "");
    EXPECT_EQ(name(), "MEJORADA DEL CAMPO");
}

TEST_F(IncrementalSearch, LeadingBlanksGoAndTrailingOnesStay) {
    edit.setText("  MEJORADA");
    type(" ");
    EXPECT_EQ(edit.text(), "MEJORADA ");
    EXPECT_EQ(name(), "MEJORADA DEL CAMPO");
}

TEST_F(IncrementalSearch, MovingKeysTakeLeadingBlanksOffToo) {
    edit.setText("  MEJORADA");
    press(Qt::Key_Down);
    EXPECT_EQ(edit.text(), "MEJORADA");
    EXPECT_EQ(name(), "BARCELONA");
}

TEST_F(IncrementalSearch, EmptyTextLeavesThePosition) {
    type("M");
    press(Qt::Key_Backspace);
    EXPECT_EQ(edit.text(), "");
    EXPECT_EQ(name(), "MADRID");
}

TEST_F(IncrementalSearch, TextThatTheCodePageCannotHoldMovesNothing) {
    type("M");
    type(QStringLiteral("Ł"));
    EXPECT_EQ(edit.text(), QStringLiteral("MŁ"));
    EXPECT_EQ(name(), "MADRID");
}

TEST_F(IncrementalSearch, PageUpAndPageDownGoToTheFirstAndTheLastRecord) {
    press(Qt::Key_PageDown);
    EXPECT_EQ(name(), QStringLiteral("ÑORA, LA"));
    press(Qt::Key_PageUp);
    EXPECT_EQ(name(), "ALPEDRETE");
}

TEST_F(IncrementalSearch, UpAndDownGoToTheNeighbours) {
    type("M");
    press(Qt::Key_Down);
    EXPECT_EQ(name(), "MEJORADA DEL CAMPO");
    press(Qt::Key_Up);
    press(Qt::Key_Up);
    EXPECT_EQ(name(), QStringLiteral("CORUÑA, A"));
    EXPECT_EQ(grid.cellText(grid.currentRow(), 0), QStringLiteral("CORUÑA, A"));
}

TEST_F(IncrementalSearch, UpAtTheFirstRecordAndDownAtTheLastDoNothing) {
    press(Qt::Key_Up);
    press(Qt::Key_Up);
    EXPECT_EQ(name(), "ALPEDRETE");
    press(Qt::Key_PageDown);
    press(Qt::Key_Down);
    press(Qt::Key_Down);
    EXPECT_EQ(name(), QStringLiteral("ÑORA, LA"));
    press(Qt::Key_Up);
    EXPECT_EQ(name(), "MEJORADA DEL CAMPO") << "and the way back is not longer for it";
}

TEST_F(IncrementalSearch, TextInAnotherFieldThanTheActiveOrdersFindsTheFirstRecord) {
    keyField = "COD_INE"; // as after a click on a title, which does not move the focus
    press(Qt::Key_PageDown);
    type("28");
    EXPECT_EQ(name(), "ALPEDRETE");
}

TEST_F(IncrementalSearch, SearchStaysInsideOfARange) {
    table.setRange({{"NOMBRE", std::string("B")}}, {{"NOMBRE", std::string("MADRID")}});
    type("ME");
    EXPECT_EQ(name(), "MADRID");
}

TEST_F(IncrementalSearch, ClosedTableIsLeftAlone) {
    table.close();
    type(" M");
    for (const Qt::Key key : {Qt::Key_Up, Qt::Key_Down, Qt::Key_PageUp, Qt::Key_PageDown}) {
        press(key);
    }
    EXPECT_EQ(edit.text(), "M");
    EXPECT_FALSE(table.isOpen());
}

TEST_F(IncrementalSearch, EmptyTableIsLeftAlone) {
    table.setFilter("NOMBRE='X'");
    type("M");
    for (const Qt::Key key : {Qt::Key_Up, Qt::Key_Down, Qt::Key_PageUp, Qt::Key_PageDown}) {
        press(key);
    }
    EXPECT_TRUE(table.isEmpty());
}

TEST_F(IncrementalSearch, CaretAndSelectionStayOnTheirLettersWhenBlanksGo) {
    QLineEdit box;
    box.setText("  MADRID");
    box.setCursorPosition(5);
    ambrel::removeLeadingBlanks(box);
    EXPECT_EQ(box.cursorPosition(), 3);

    box.setText("  MADRID");
    box.setSelection(4, 2);
    ambrel::removeLeadingBlanks(box);
    EXPECT_EQ(box.selectedText(), "DR");
    EXPECT_EQ(box.cursorPosition(), 4);

    box.setText("  MADRID");
    box.setSelection(6, -2);
    ambrel::removeLeadingBlanks(box);
    EXPECT_EQ(box.selectedText(), "DR");
    EXPECT_EQ(box.cursorPosition(), 2) << "selected backwards, the caret is at its start";

    box.setText("MADRID");
    box.setSelection(1, 2);
    ambrel::removeLeadingBlanks(box);
    EXPECT_EQ(box.selectedText(), "AD");
}

} // namespace
