// Undo and redo of a choice among the suggestions of an address: it has filled several boxes.
#include "form/BoxSuggestions.h"

namespace {

using postal_tests::BoxSuggestions;
using postal_tests::shownRows;

TEST_F(BoxSuggestions, UndoGivesBackWhatWasTyped) {
    open();
    choose(Box::Municipality, "madird");
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(text(Box::Municipality), "MADIRD");
    EXPECT_EQ(tag(Box::Municipality), 0);
    EXPECT_EQ(state(Box::Municipality), State::NotValidated);
    fill(Box::Municipality, "mad");
    choose(Box::Street, "sta. teresa 5");
    ASSERT_EQ(text(Box::Street), "SANTA TERESA");
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(text(Box::Street), "STA. TERESA 5");
    EXPECT_EQ(tag(Box::Street), 0);
    EXPECT_EQ(text(Box::Number), "") << "it stands behind the street again";
    press(Qt::Key_Escape);
}

TEST_F(BoxSuggestions, UndoGivesBackEverythingThatAChosenStreetHasSet) {
    open();
    fill(Box::PostalCode, "28013");
    fill(Box::StreetType, "av");
    choose(Box::Street, "c/ gran via 7");
    ASSERT_EQ(text(Box::Municipality), "MADRID");
    ASSERT_EQ(text(Box::StreetType), "CL");
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(text(Box::Street), "C/ GRAN VIA 7");
    for (const auto& [which, before] :
         {std::pair(Box::Municipality, ""), std::pair(Box::Province, ""), std::pair(Box::StreetType, "AV"),
          std::pair(Box::Number, ""), std::pair(Box::PostalCode, "28013")}) {
        EXPECT_EQ(text(which), before);
    }
    EXPECT_EQ(tag(Box::Municipality), 0);
    EXPECT_EQ(state(Box::Municipality), State::Empty);
    EXPECT_EQ(state(Box::StreetType), State::Validated) << "AV is a type";
    EXPECT_EQ(state(Box::Street), State::NotValidated);
    press(Qt::Key_Escape);
}

TEST_F(BoxSuggestions, UndoGivesBackAMunicipalityThatWasValidated) {
    open();
    fill(Box::Municipality, "aranj");
    ASSERT_EQ(tag(Box::Municipality), 28013);
    ASSERT_EQ(text(Box::PostalCode), "28300");
    fill(Box::Number, "8");
    choose(Box::Municipality, "madird");
    ASSERT_EQ(text(Box::Province), "MADRID");
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(text(Box::Municipality), "MADIRD");
    EXPECT_EQ(text(Box::PostalCode), "28300");
    EXPECT_EQ(text(Box::Number), "8");
    press(Qt::Key_Escape);
}

TEST_F(BoxSuggestions, UndoBringsAStreetBackThatWasValidated) {
    addStreets({{"28000020", "ALCALA DE HENARES", "AV", "28012"}});
    open();
    fillAddress("mad", "CL", "alcala", "250");
    enter(Box::Street);
    press(Qt::Key_Down);
    ASSERT_TRUE(listCame());
    ASSERT_TRUE(shownRows().at(1).startsWith("AV ALCALA DE HENARES")) << shownRows().join('|').toStdString();
    press(Qt::Key_Down);
    press(Qt::Key_Return);
    ASSERT_EQ(text(Box::PostalCode), "28012");
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(text(Box::Street), "ALCALA");
    EXPECT_EQ(text(Box::PostalCode), "28027");
    for (const Box which : {Box::Street, Box::StreetType, Box::Number, Box::PostalCode}) {
        EXPECT_EQ(state(which), State::Validated);
    }
}

TEST_F(BoxSuggestions, RedoTakesTheChoiceAgainWithAllItHadSet) {
    open();
    fill(Box::PostalCode, "28013");
    choose(Box::Street, "c/ gran via 7");
    press(Qt::Key_Z, Qt::ControlModifier);
    ASSERT_EQ(text(Box::Number), "");
    press(Qt::Key_Y, Qt::ControlModifier);
    if (text(Box::Street) != "GRAN VIA") { // the keys of another desktop
        press(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    }
    ASSERT_EQ(text(Box::Street), "GRAN VIA");
    EXPECT_EQ(text(Box::Number), "7");
    EXPECT_EQ(text(Box::Municipality), "MADRID");
    EXPECT_EQ(text(Box::Province), "MADRID");
    EXPECT_EQ(text(Box::StreetType), "CL");
    EXPECT_EQ(tag(Box::Street), 28000010);
    for (const Box which :
         {Box::Municipality, Box::Province, Box::StreetType, Box::Street, Box::Number, Box::PostalCode}) {
        EXPECT_EQ(state(which), State::Validated);
    }
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(text(Box::Number), "") << "undone once more";
    EXPECT_EQ(text(Box::Municipality), "");
    press(Qt::Key_Escape);
}

TEST_F(BoxSuggestions, TypingAfterAnUndoForgetsTheChoice) {
    open();
    fill(Box::Municipality, "mad");
    choose(Box::Street, "sta. teresa 5");
    press(Qt::Key_Z, Qt::ControlModifier);
    ASSERT_EQ(text(Box::Street), "STA. TERESA 5");
    write(Box::Street, "santa teresa");
    EXPECT_EQ(text(Box::Number), "") << "nobody has said 5 again";
    press(Qt::Key_Tab);
}

TEST_F(BoxSuggestions, UndoLeavesANumberAloneThatTheUserHasChangedSince) {
    open();
    fill(Box::Municipality, "mad");
    choose(Box::Street, "sta. teresa 5");
    fill(Box::Number, "7");
    enter(Box::Street);
    press(Qt::Key_Z, Qt::ControlModifier);
    ASSERT_EQ(text(Box::Street), "STA. TERESA 5");
    EXPECT_EQ(text(Box::Number), "7");
    press(Qt::Key_Escape);
}

TEST_F(BoxSuggestions, UndoLeavesTheNumberOfAnotherStoredAddressAlone) {
    open();
    fill(Box::Municipality, "mad");
    fill(Box::Number, "40");
    choose(Box::Street, "sta. teresa 5");
    ASSERT_EQ(text(Box::Number), "5");
    address->takeStored(); // an address with the same number
    write(Box::Street, "sta. teresa 5");
    EXPECT_EQ(text(Box::Number), "5") << "40 was that of the address before";
    press(Qt::Key_Escape);
}

} // namespace
