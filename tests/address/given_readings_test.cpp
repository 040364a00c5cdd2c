// Columns taken apart together.
#include "address/GivenReadings.h"

#include <gtest/gtest.h>

#include "address/AddressLine.h"

namespace ambrel {
namespace {

AddressParts first(const GivenAddress& given) { return readingsOf(given).likely.front(); }

TEST(GivenReadings, FiguresInTheNumbersColumnAreReadAsAnyOtherTextOfIt) {
    for (int value = 0; value < 20'000; ++value) {
        const std::string digits = std::to_string(value);
        for (const std::string& number :
             {digits, std::string(6 - digits.size(), '0') + digits, '0' + digits, "  " + digits + ' '}) {
            const AddressParts read = readNumberText(number);
            const AddressParts given = first({.street = "MAYOR", .number = number});
            const bool isTooLong = read.number.empty(); // then the figures are one that no street has
            ASSERT_EQ(given.number, isTooLong ? read.rest : read.number) << number;
            ASSERT_EQ(given.floor + given.numberSuffix + given.numberEnd,
                      read.floor + read.numberSuffix + read.numberEnd)
                << number;
        }
    }
}

TEST(GivenReadings, AMunicipalityMayCarryItsCodeAndProvince) {
    const GivenReadings readings = readingsOf({.street = "MAYOR", .municipality = " 28901 Getafe (Madrid) "});
    ASSERT_EQ(readings.likely.size(), 2U);
    EXPECT_EQ(readings.likely[0].municipality, "28901 Getafe (Madrid)");
    EXPECT_EQ(readings.likely[1].municipality, "Getafe");
    EXPECT_EQ(readings.likely[1].postalCode, "28901");
    EXPECT_EQ(readings.likely[1].province, "Madrid");
}

TEST(GivenReadings, WhatHasAColumnOfItsOwnIsTakenFromThere) {
    const GivenReadings readings =
        readingsOf({.street = "MAYOR", .postalCode = "28902", .municipality = "28901 Getafe"});
    ASSERT_EQ(readings.likely.size(), 2U);
    EXPECT_EQ(readings.likely[1].municipality, "Getafe");
    EXPECT_EQ(readings.likely[1].postalCode, "28902");
    EXPECT_EQ(readings.likely[1].rest, "28901") << "nothing is dropped";
}

TEST(GivenReadings, ThePostalCodeInTheNumbersColumnIsHeededAndStaysThere) {
    for (const char* const number :
         {"5, local 28009", "5 local 28009", "5 bajo local 28009", "5, 28009", "5 C.P. 28009"}) {
        const AddressParts parts = first({.street = "MAYOR", .number = number});
        EXPECT_EQ(parts.postalCode, "28009") << number;
        EXPECT_EQ(parts.number, "5") << number;
        EXPECT_NE((parts.floor + parts.rest).find("28009"), std::string::npos) << number;
        EXPECT_EQ(first({.line = "Calle Mayor", .number = number}).postalCode, "28009") << number;
    }
    EXPECT_EQ(first({.street = "MAYOR", .number = "28009"}).postalCode, "") << "a number that no street has";
    EXPECT_EQ(first({.street = "MAYOR", .number = "5, Apdo. Correos 28080"}).postalCode, "");
}

TEST(GivenReadings, OfSeveralPostalCodesThatOfItsOwnColumnCountsThenTheLinesThenTheStreets) {
    const GivenAddress all{
        .line = "28001 Madrid", .street = "MAYOR 28002", .number = "5, local 28003", .postalCode = "28004"};
    GivenAddress given = all;
    EXPECT_EQ(first(given).postalCode, "28004");
    given.postalCode.clear();
    EXPECT_EQ(first(given).postalCode, "28001");
    given.line.clear();
    EXPECT_EQ(first(given).postalCode, "28002");
    given.street = "MAYOR";
    EXPECT_EQ(first(given).postalCode, "28003");
}

TEST(GivenReadings, ThePostalCodeInTheRestIsHeededWhereThereIsNoOtherAndStaysThere) {
    for (const char* const rest :
         {"28009", "C.P. 28009", "2º B, 28009", "local 28009", "Cód. Postal 28009"}) {
        const AddressParts parts = first({.street = "MAYOR", .number = "5", .rest = rest});
        EXPECT_EQ(parts.postalCode, "28009") << rest;
        EXPECT_EQ(parts.rest, rest);
        EXPECT_EQ(first({.line = "C/ Mayor 5, Madrid", .rest = rest}).postalCode, "28009") << rest;
        EXPECT_EQ(first({.street = "MAYOR 28001", .rest = rest}).postalCode, "28001") << rest;
        EXPECT_EQ(first({.street = "MAYOR", .rest = rest, .postalCode = "28001"}).postalCode, "28001");
    }
    for (const char* const rest : {"Apdo. de Correos 28080", "km 28009", "tel. 915280091"}) {
        EXPECT_EQ(first({.street = "MAYOR", .number = "5", .rest = rest}).postalCode, "") << rest;
    }
}

TEST(GivenReadings, ABoxInTheStreetsColumnHasNoPostalCode) {
    for (const char* const street : {"Apartado de Correos 28080", "C/ Sol 3, Apdo. Correos 28080"}) {
        EXPECT_EQ(first({.street = street}).postalCode, "") << street;
        EXPECT_NE(first({.street = street}).rest.find("28080"), std::string::npos) << street;
    }
}

TEST(GivenReadings, AColumnTakesThePlaceOfWhatTheLineSays) {
    const AddressParts parts = first({.line = "C/ Mayor 5, 28013 Madrid", .municipality = "Getafe"});
    EXPECT_EQ(parts.street, "Mayor");
    EXPECT_EQ(parts.number, "5");
    EXPECT_EQ(parts.postalCode, "28013");
    EXPECT_EQ(parts.municipality, "Getafe");
}

} // namespace
} // namespace ambrel
