// A number after the street that is chosen among the suggestions goes into its own box.
#include <QIntValidator>

#include "form/BoxSuggestions.h"

namespace {

using postal_tests::BoxSuggestions;

TEST_F(BoxSuggestions, TheNumberAfterAStreetMovesIntoItsBox) {
    open();
    fill(Box::Municipality, "mad");
    choose(Box::Street, "Sta. Teresa 15");
    EXPECT_EQ(text(Box::Street), "SANTA TERESA");
    EXPECT_EQ(text(Box::Number), "15");
    EXPECT_EQ(text(Box::PostalCode), "28014");
    for (const Box which : {Box::Street, Box::StreetType, Box::Number, Box::PostalCode}) {
        EXPECT_EQ(state(which), State::Validated);
    }
    choose(Box::Street, "Sta. Teresa 5");
    EXPECT_EQ(text(Box::Number), "5");
    EXPECT_EQ(text(Box::PostalCode), "28012");
}

TEST_F(BoxSuggestions, ALongNumberAfterAStreetIsNotLost) {
    open();
    fill(Box::Municipality, "mad");
    for (const auto& [typed, number] :
         {std::pair("sta teresa 28013", "28013"), std::pair("Sta. Teresa, 123456 B", "123456 B"),
          std::pair("garn via 5 28013", "5 28013")}) {
        choose(Box::Street, typed);
        EXPECT_EQ(text(Box::Number), number);
        if (QString(number).front() != '5') {
            EXPECT_EQ(state(Box::Number), State::NotValidated) << number;
            EXPECT_EQ(address->reason(Box::Number), "No se entiende como número de la vía.");
        }
    }
}

TEST_F(BoxSuggestions, ANumberGoesWholeIntoABoxWithAValidator) {
    boxes.number->setValidator(new QIntValidator(boxes.number));
    open();
    fill(Box::Municipality, "mad");
    choose(Box::Street, "Sta. Teresa 15 bis");
    EXPECT_EQ(text(Box::Number), "15 BIS");
    EXPECT_EQ(text(Box::PostalCode), "28014");
}

TEST_F(BoxSuggestions, WhatIsNotTheNumberOfTheHouseIsNotTakenForIt) {
    open();
    fill(Box::Municipality, "mad");
    for (const auto& [typed, number] :
         {std::pair("Sta. Teresa km 15", "KM 15"), std::pair("sta teresa piso 3", "PISO 3")}) {
        choose(Box::Street, typed);
        EXPECT_EQ(text(Box::Street), "SANTA TERESA");
        EXPECT_EQ(text(Box::Number), number);
        EXPECT_EQ(state(Box::Number), State::NotValidated) << number;
        EXPECT_EQ(state(Box::PostalCode), State::NotValidated) << number;
    }
}

} // namespace
