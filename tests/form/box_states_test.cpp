// The state of each box, and its notification to hosts.
#include <QTest>

#include "form/BoxesTest.h"

namespace {

class BoxStates : public postal_tests::BoxesTest {};

TEST_F(BoxStates, AnEmptyFormSaysNothing) {
    open();
    for (const Box one :
         {Box::Municipality, Box::Province, Box::StreetType, Box::Street, Box::Number, Box::PostalCode}) {
        EXPECT_EQ(state(one), State::Empty);
    }
}

TEST_F(BoxStates, AWholeAddressIsValidated) {
    open();
    fillAddress("mad", "CL", "alcala", "5");
    for (const Box one :
         {Box::Municipality, Box::Province, Box::StreetType, Box::Street, Box::Number, Box::PostalCode}) {
        EXPECT_EQ(state(one), State::Validated) << static_cast<int>(one);
    }
}

TEST_F(BoxStates, NumbersAreReadAsPeopleWriteThem) {
    open();
    fillAddress("mad", "CL", "alcala", "5");
    for (const char* number : {"212 BIS", "212B", "212-214", "nº 212", "212, 3º"}) {
        fill(Box::Number, QString::fromUtf8(number));
        EXPECT_EQ(text(Box::PostalCode), "28027") << number;
        EXPECT_EQ(state(Box::Number), State::Validated) << number;
        fill(Box::Number, "5");
        EXPECT_EQ(text(Box::PostalCode), "28014");
    }
}

TEST_F(BoxStates, WithoutANumberAStreetOfSeveralCodesIsNotSure) {
    open();
    for (const char* number : {"", "S/N"}) {
        fillAddress("mad", "CL", "alcala", number);
        EXPECT_EQ(text(Box::PostalCode), "28014") << "the first stretch's";
        EXPECT_EQ(state(Box::PostalCode), State::NotValidated) << number;
    }
}

TEST_F(BoxStates, WithoutANumberAStreetOfOneCodeIsSure) {
    open();
    fillAddress("mad", "CL", "mayor", "S/N");
    EXPECT_EQ(text(Box::PostalCode), "28013");
    EXPECT_EQ(state(Box::PostalCode), State::Validated);
}

TEST_F(BoxStates, WhatIsNoNumberOrInNoStretchLeavesTheCodeNotValidated) {
    addStreets({{"28000009", "CORTA", "CL", "28001", {1, 9}, {2, 8}}});
    open();
    for (const char* number : {"bajo", "500"}) {
        fillAddress("mad", "CL", "corta", number);
        EXPECT_EQ(text(Box::PostalCode), "28001");
        EXPECT_EQ(state(Box::Number), State::NotValidated) << number;
        EXPECT_EQ(state(Box::PostalCode), State::NotValidated) << number;
    }
}

TEST_F(BoxStates, ANumberThatTheTablesCannotHoldIsNotTakenForNone) {
    addStreets({{"28000009", "CORTA", "CL", "28001", {1, 9}, {2, 8}}});
    open();
    fillAddress("mad", "CL", "corta", "3");
    ASSERT_EQ(state(Box::PostalCode), State::Validated);
    paste(Box::Number, QStringLiteral("500\u2011B")); // a hyphen of the web
    EXPECT_EQ(state(Box::Number), State::NotValidated);
    EXPECT_EQ(state(Box::PostalCode), State::NotValidated);
}

TEST_F(BoxStates, ACodeThatIsNotTheAddresssNamesTheRightOne) {
    open();
    fillAddress("mad", "CL", "alcala", "5");
    fill(Box::PostalCode, "28027");
    EXPECT_EQ(state(Box::PostalCode), State::NotValidated);
    EXPECT_TRUE(address->reason(Box::PostalCode).contains("28014"));
    fill(Box::PostalCode, "28014");
    EXPECT_EQ(state(Box::PostalCode), State::Validated);
}

TEST_F(BoxStates, AStreetThatHasNoTypeInTheTablesGoesWithAnyType) {
    addStreets({{"28000009", "SENDERO ALTO", "", "28001"}});
    open();
    fillAddress("mad", "", "sendero", "3");
    fill(Box::StreetType, "PZ");
    for (const Box one : {Box::StreetType, Box::Street, Box::PostalCode}) {
        EXPECT_EQ(state(one), State::Validated) << address->reason(one).toStdString();
    }
}

TEST_F(BoxStates, AnotherTypeLeavesTheOnlyCodeOfAMunicipalityValidated) {
    addStreets({{"28000009", "REAL", "PZ", "28300"}, {"28000010", "REALEJO", "PZ", "28012"}});
    open();
    fillAddress("aranj", "", "real", "3");
    fill(Box::StreetType, "AV");
    EXPECT_EQ(address->reason(Box::StreetType), "La vía está en las tablas como «PZ REAL».");
    EXPECT_EQ(state(Box::PostalCode), State::Validated);
    fill(Box::StreetType, "");
    fillAddress("mad", "", "realejo", "3");
    fill(Box::StreetType, "AV");
    EXPECT_EQ(address->reason(Box::PostalCode), "La vía está en las tablas como «PZ REALEJO».");
}

TEST_F(BoxStates, AnEditedNumberTakesTheCodesValidationAwayAtOnce) {
    open();
    fillAddress("mad", "CL", "alcala", "5");
    enter(Box::Number);
    press(Qt::Key_End);
    type("0");
    EXPECT_EQ(state(Box::PostalCode), State::NotValidated);
    address->settle();
    EXPECT_EQ(state(Box::PostalCode), State::Validated);
}

TEST_F(BoxStates, AnEditedMunicipalityTakesEverythingsValidationAwayAtOnce) {
    open();
    fillAddress("mad", "CL", "alcala", "5");
    enter(Box::Municipality);
    press(Qt::Key_End);
    press(Qt::Key_Backspace);
    for (const Box one : {Box::Municipality, Box::Province, Box::Street, Box::Number, Box::PostalCode}) {
        EXPECT_EQ(state(one), State::NotValidated) << static_cast<int>(one);
    }
    EXPECT_EQ(tag(Box::Street), 0);
}

TEST_F(BoxStates, HostsAreNotifiedOfEachChange) {
    open();
    std::vector<Box> told;
    QObject::connect(address.get(), &ambrel::AddressBoxes::stateChanged, &form,
                     [&](Box box) { told.push_back(box); });
    fill(Box::Municipality, "haro");
    EXPECT_NE(std::ranges::find(told, Box::Municipality), told.end());
    EXPECT_NE(std::ranges::find(told, Box::Province), told.end());
    EXPECT_NE(std::ranges::find(told, Box::PostalCode), told.end());
    EXPECT_EQ(std::ranges::find(told, Box::Street), told.end());
}

TEST_F(BoxStates, AHostMayHaveTheMunicipalityAlone) {
    boxes = {.municipality = boxes.municipality};
    open();
    fill(Box::Municipality, "mad");
    EXPECT_EQ(state(Box::Municipality), State::Validated);
    EXPECT_EQ(state(Box::Street), State::Empty);
}

TEST_F(BoxStates, BoxesMayGoBeforeTheirWiringAndAfterIt) {
    open();
    fill(Box::Municipality, "mad");
    enter(Box::Street);
    type("alc");
    delete boxes.street;
    delete boxes.municipality;
    address.reset();
    press(Qt::Key_Tab);
}

} // namespace
