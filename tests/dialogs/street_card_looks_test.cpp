// TFFichaVia: the visible part of a long text, and the selection when the card opens.
#include <gtest/gtest.h>

#include <QTest>

#include "dialogs/StreetCardForm.h"

namespace {

constexpr const char* longName = "AVENIDA WWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWW";

class StreetCardLooks : public postal_tests::StreetCardForm {
protected:
    StreetCardLooks() {
        addStreets({{"99000010", longName, "CL", "28013"}, {"28000010", longName, "CL", "28013"}});
    }
    /// Whether the first letter is visible, judged by what is painted.
    static bool showsBeginning(QLineEdit& box) {
        static_cast<void>(box.grab());
        return box.cursorPositionAt({box.textMargins().left() + 1, box.height() / 2}) == 0;
    }
};

TEST_F(StreetCardLooks, ALongNameShowsItsBeginning) {
    for (const TOperacion operation : {opModificacion, opConsulta, opBaja}) {
        card.reset();
        openCard(operation, longName, "99000010");
        EXPECT_EQ(edit("DBEVia").isEnabled(), operation == opModificacion);
        EXPECT_TRUE(showsBeginning(edit("DBEVia"))) << static_cast<int>(operation);
        EXPECT_TRUE(showsBeginning(edit("EVecindad"))) << static_cast<int>(operation);
    }
}

TEST_F(StreetCardLooks, ALongNameShowsItsBeginningAgainOnceItIsLeft) {
    openCard(opModificacion, {}, "99000010");
    enter("DBEVia");
    press(Qt::Key_End);
    press(Qt::Key_Backspace);
    EXPECT_FALSE(showsBeginning(edit("DBEVia")));
    leaveByTab();
    EXPECT_TRUE(showsBeginning(edit("DBEVia")));
}

TEST_F(StreetCardLooks, ALongProvinceShowsItsBeginning) {
    openCard(opModificacion);
    enter("DBEVia");
    combo("CBProvincia").setEditText(longName);
    EXPECT_TRUE(showsBeginning(*combo("CBProvincia").lineEdit()));
    enter("CBProvincia");
    press(Qt::Key_End);
    EXPECT_FALSE(showsBeginning(*combo("CBProvincia").lineEdit()));
    leaveByTab();
    EXPECT_TRUE(showsBeginning(*combo("CBProvincia").lineEdit()));
}

TEST_F(StreetCardLooks, TheFirstEditIsSelectedWhenItOpens) {
    openCard(opModificacion);
    EXPECT_EQ(focused(), "EVecindad");
    EXPECT_EQ(edit("EVecindad").selectedText(), "MADRID");
    card.reset();
    openCard(opModificacion, longName, "99000010");
    EXPECT_EQ(edit("EVecindad").selectedText(), longName);
}

TEST_F(StreetCardLooks, WhatIsTypedFirstReplacesTheMunicipality) {
    openCard(opModificacion);
    press(Qt::Key_S);
    EXPECT_EQ(textOf("EVecindad").front(), 'S');
}

} // namespace
