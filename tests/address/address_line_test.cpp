// Takes written addresses apart.
#include "address/AddressLine.h"

#include <gtest/gtest.h>

#include "address/WrittenAddress.h"
#include "support/Tables.h"

namespace {

using ambrel::AddressParts;
using ambrel::test::written;
using ambrel::test::WrittenAddress;

/// The likeliest reading of a line.
WrittenAddress line(const char* text) {
    return written(ambrel::readAddressLine(ambrel::test::ansi(text)).front());
}

TEST(AddressLineTest, TypeStreetNumberFloorCodeAndTown) {
    EXPECT_EQ(line("Calle de Alcalá, 100, 3º B, 28009 Madrid"), (WrittenAddress{.type = "Calle",
                                                                                .street = "de Alcalá",
                                                                                .number = "100",
                                                                                .floor = "3º B",
                                                                                .postalCode = "28009",
                                                                                .municipality = "Madrid"}));
}

TEST(AddressLineTest, ANumberWithBisAndAProvinceInBrackets) {
    EXPECT_EQ(line("C/ Mayor 5 bis, 2º izda., Getafe (Madrid)"), (WrittenAddress{.type = "C/",
                                                                                 .street = "Mayor",
                                                                                 .number = "5",
                                                                                 .numberSuffix = "BIS",
                                                                                 .floor = "2º izda.",
                                                                                 .municipality = "Getafe",
                                                                                 .province = "Madrid"}));
}

TEST(AddressLineTest, WithoutNumberAndWithoutSeparators) {
    EXPECT_EQ(line("Avda. Constitución s/n 41001 SEVILLA"), (WrittenAddress{.type = "Avda.",
                                                                            .street = "Constitución",
                                                                            .number = "S/N",
                                                                            .postalCode = "41001",
                                                                            .municipality = "SEVILLA"}));
}

TEST(AddressLineTest, AnEstateWithAUnit) {
    EXPECT_EQ(line("Pol. Ind. Las Nieves, nave 12"),
              (WrittenAddress{.type = "Pol. Ind.", .street = "Las Nieves", .floor = "nave 12"}));
}

TEST(AddressLineTest, AKilometreOfARoad) {
    EXPECT_EQ(line("Ctra. N-340 km 12,5"),
              (WrittenAddress{.type = "Ctra.", .street = "N-340", .number = "KM 12,5"}));
}

TEST(AddressLineTest, TheTownInFront) {
    EXPECT_EQ(line("28013 Madrid, Gran Vía 28"),
              (WrittenAddress{
                  .street = "Gran Vía", .number = "28", .postalCode = "28013", .municipality = "Madrid"}));
    EXPECT_EQ(line("Madrid Calle Mayor 5"),
              (WrittenAddress{.type = "Calle", .street = "Mayor", .number = "5", .municipality = "Madrid"}));
}

TEST(AddressLineTest, FiguresInTheNameOfAStreet) {
    EXPECT_EQ(line("Plaza 2 de Mayo 3"),
              (WrittenAddress{.type = "Plaza", .street = "2 de Mayo", .number = "3"}));
    EXPECT_EQ(line("Avda. 25 de Septiembre 4"),
              (WrittenAddress{.type = "Avda.", .street = "25 de Septiembre", .number = "4"}));
    EXPECT_EQ(line("1º de Mayo 4, Getafe"),
              (WrittenAddress{.street = "1º de Mayo", .number = "4", .municipality = "Getafe"}));
    EXPECT_EQ(line("Calle 30"), (WrittenAddress{.type = "Calle", .street = "30"}));
    EXPECT_EQ(line("Carrer 11 de Setembre"), (WrittenAddress{.type = "Carrer", .street = "11 de Setembre"}));
}

TEST(AddressLineTest, ARangeAndADoorWithoutBlanks) {
    EXPECT_EQ(line("C/Mayor,5-7 esc. A 2ºC"),
              (WrittenAddress{
                  .type = "C/", .street = "Mayor", .number = "5", .numberEnd = "7", .floor = "esc. A 2ºC"}));
    EXPECT_EQ(
        line("C/ Sol 12B 2-3"),
        (WrittenAddress{.type = "C/", .street = "Sol", .number = "12", .numberSuffix = "B", .floor = "2-3"}));
    EXPECT_EQ(line("MAYOR 5 3 B"), (WrittenAddress{.street = "MAYOR", .number = "5", .floor = "3 B"}));
}

TEST(AddressLineTest, TheTypeAfterTheName) {
    EXPECT_EQ(line("ALCALA (CALLE DE)"), (WrittenAddress{.type = "CALLE", .street = "DE ALCALA"}));
    EXPECT_EQ(line("MAYOR, CALLE, 5"), (WrittenAddress{.type = "CALLE", .street = "MAYOR", .number = "5"}));
    EXPECT_EQ(line("Nagusia kalea 5"), (WrittenAddress{.type = "kalea", .street = "Nagusia", .number = "5"}));
}

TEST(AddressLineTest, AStreetInsideAnEstate) {
    EXPECT_EQ(
        line("Urb. Las Flores, C/ Rosa 4, chalet 7"),
        (WrittenAddress{
            .type = "C/", .street = "Rosa", .number = "4", .floor = "chalet 7", .rest = "Urb. Las Flores"}));
}

} // namespace
