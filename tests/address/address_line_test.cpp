// Takes written addresses apart.
#include "address/AddressLine.h"

#include <algorithm>

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

TEST(AddressLineTest, TheTownMayStandInFront) {
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

TEST(AddressLineTest, ThePostalCodeInItsWritings) {
    for (const char* text : {"C/ Sol 3, 28009-Madrid", "C/ Sol 3, E-28009 Madrid",
                             "C/ Sol 3 C.P. 28009 Madrid", "C/ Sol 3, Código Postal: 28009 Madrid",
                             "C/ Sol 3, Cód. Postal 28009 Madrid", "C/ Sol 3 Cod.postal: 28009 Madrid",
                             "C/ Sol 3, Madrid 28009", "C/ Sol 3, Madrid, 28009", "28009, Madrid, C/ Sol 3",
                             "C/ Sol 3, 28009MADRID", "C/ Sol 3, 28.009 Madrid", "Madrid 28009 C/ Sol 3"}) {
        const WrittenAddress read = line(text);
        EXPECT_EQ(read.postalCode, "28009") << text;
        EXPECT_EQ(read.number, "3") << text;
        EXPECT_TRUE(read.municipality == "Madrid" || read.municipality == "MADRID") << text << ": " << read;
        EXPECT_EQ(read.rest, "") << text;
    }
    EXPECT_EQ(line("C/ Mayor 5, 8001 Barcelona").postalCode, "8001"); // a spreadsheet's lost zero
    EXPECT_EQ(line("C/ Mayor 1234 Getafe").postalCode, "");
}

TEST(AddressLineTest, ThePostalCodeAfterAFloorIsNotTheFloors) {
    for (const char* text : {"C/ Sol 3, 6ª planta 28009 Madrid", "C/ Sol 3 1er piso, 28009 Madrid",
                             "C/ Sol 3 1er piso. 28009-Madrid", "C/ Sol 3 6a planta C.P. 28009 Madrid",
                             "C/ Sol 3 local 28009 Madrid", "C/ Sol 3 local E-28009 Madrid"}) {
        const WrittenAddress read = line(text);
        EXPECT_EQ(read.postalCode, "28009") << text << ": " << read;
        EXPECT_EQ(read.number, "3") << text;
        EXPECT_EQ(read.municipality, "Madrid") << text;
    }
    EXPECT_EQ(line("Lugar Cabo, parcela 10023, 15838 Negreira").postalCode, "15838");
    EXPECT_EQ(line("15838 Negreira, Lugar Cabo 4, parcela 10023").postalCode, "15838");
    EXPECT_EQ(line("15838 Negreira, Lugar Cabo 4, parcela nº 10023").postalCode, "15838");
}

TEST(AddressLineTest, TheWordForAUnitBeforeThePostalCodeStays) {
    for (const char* unit : {"local", "bajo local", "parcela", "bajo, local", "local nº", "2º puerta"}) {
        const WrittenAddress expected{.type = "C/",
                                      .street = "Sol",
                                      .number = "3",
                                      .floor = unit,
                                      .postalCode = "28009",
                                      .municipality = "Madrid"};
        for (const char* comma : {", ", " "}) {
            const std::string text = std::string("C/ Sol 3") + comma + unit + " 28009 Madrid";
            EXPECT_EQ(line(text.c_str()), expected) << text;
        }
    }
}

TEST(AddressLineTest, AUnitBeforeThePostalCodeMayEndANameWithoutANumber) {
    const auto readings = ambrel::readAddressLine("Calle Sol local 28009 Madrid");
    ASSERT_EQ(readings.size(), 2U);
    EXPECT_EQ(readings[0].street, "Sol local") << "there may be such a street";
    EXPECT_EQ(written(readings[1]), (WrittenAddress{.type = "Calle",
                                                    .street = "Sol",
                                                    .floor = "local",
                                                    .postalCode = "28009",
                                                    .municipality = "Madrid"}));
    for (const char* text : {"Calle de la Torre 28009 Madrid", "Calle Casa 28009 Madrid"}) {
        EXPECT_EQ(ambrel::readAddressLine(text).size(), 1U) << text;
    }
}

TEST(AddressLineTest, ANumberOfAPostOfficeBoxIsNoPostalCode) {
    EXPECT_EQ(line("Apdo. 10234, 28080 Madrid"),
              (WrittenAddress{.rest = "Apdo. 10234", .postalCode = "28080", .municipality = "Madrid"}));
    EXPECT_EQ(line("Apdo. de correos 123"), (WrittenAddress{.rest = "Apdo. de correos 123"}));
}

TEST(AddressLineTest, ANumberOfABoxIsNoPostalCodeHoweverManyWordsTheBoxHas) {
    for (const char* box : {"Apartado de Correos 28080", "Apdo. Correos nº 28080", "Apartado postal 28080",
                            "Apartado núm. 28080", "Apdo. de Correos: 28080", "Apartat de Correus 28080",
                            "apartado postal nº 28080"}) {
        const WrittenAddress alone = line(box);
        EXPECT_EQ(alone.postalCode, "") << box << ": " << alone;
        EXPECT_EQ(alone.rest, box);
        for (const std::string& text :
             {std::string(box) + ", 28009 Madrid", std::string(box) + " 28009 Madrid",
              "28009 Madrid, " + std::string(box)}) {
            const WrittenAddress read = line(text.c_str());
            EXPECT_EQ(read.postalCode, "28009") << text << ": " << read;
            EXPECT_EQ(read.municipality, "Madrid") << text << ": " << read;
            EXPECT_EQ(read.rest, box) << text;
        }
        for (const char* comma : {", ", " "}) {
            EXPECT_EQ(line((std::string("28009 Madrid") + comma + box).c_str()).municipality, "Madrid")
                << box;
            const std::string text = std::string("C/ Sol 3") + comma + box + ", 28009 Madrid";
            EXPECT_EQ(line(text.c_str()), (WrittenAddress{.type = "C/",
                                                          .street = "Sol",
                                                          .number = "3",
                                                          .rest = box,
                                                          .postalCode = "28009",
                                                          .municipality = "Madrid"}))
                << text;
        }
    }
}

TEST(AddressLineTest, ThePostalCodeAfterABoxWithoutNumberIsNotMissed) {
    for (const char* text : {"Apartado de Correos, 28080 Madrid", "Apartado postal C.P. 28080 Madrid",
                             "Apartado C.P. 28080 Madrid", "Lista de Correos 28080 Madrid",
                             "Calle Correos 5 28080 Madrid", "Apdo. Correos 12 28080 Madrid"}) {
        EXPECT_EQ(line(text).postalCode, "28080") << text;
        EXPECT_EQ(line(text).municipality, "Madrid") << text;
    }
    EXPECT_EQ(line("Apartado postal C.P. 28080 Madrid").rest, "Apartado postal");
}

TEST(AddressLineTest, TheTownMayFollowTheNumberOfABox) {
    for (const char* box : {"Apdo. de Correos 8001", "Apdo. Correos 28080", "Apartado 123"}) {
        const auto readings = ambrel::readAddressLine(std::string(box) + " Barcelona");
        EXPECT_TRUE(std::ranges::any_of(readings, [&](const AddressParts& read) {
            return written(read) == WrittenAddress{.rest = box, .municipality = "Barcelona"};
        })) << box;
        EXPECT_EQ(
            line((std::string("C/ Sol 3 ") + box + " Barcelona").c_str()),
            (WrittenAddress{
                .type = "C/", .street = "Sol", .number = "3", .rest = box, .municipality = "Barcelona"}));
    }
}

TEST(AddressLineTest, TheTownMayFollowATelephone) {
    for (const char* telephone : {"Tlf 915551234", "Tel. 91 555 12 34", "móvil: 600123456"}) {
        for (const char* place : {"Getafe, Madrid", "Getafe (Madrid)"}) {
            const std::string text = std::string("C/ Sol 3, ") + telephone + ' ' + place;
            EXPECT_EQ(line(text.c_str()), (WrittenAddress{.type = "C/",
                                                          .street = "Sol",
                                                          .number = "3",
                                                          .rest = telephone,
                                                          .municipality = "Getafe",
                                                          .province = "Madrid"}))
                << text;
        }
    }
    EXPECT_EQ(line("C/ Sol 3, tel. 915551234 extensión 5, 28009 Madrid").rest, "tel. 915551234 extensión 5");
    EXPECT_EQ(line("C/ Sol 3, junto al 5 bis, 28009 Madrid").municipality, "Madrid");
}

TEST(AddressLineTest, TownsOfSeveralWordsAndTwoLanguages) {
    EXPECT_EQ(line("C/ Sol 3, 28801 Alcalá de Henares (Madrid)").municipality, "Alcalá de Henares");
    EXPECT_EQ(line("C/ Sol 3, 01001 Vitoria-Gasteiz").municipality, "Vitoria-Gasteiz");
    EXPECT_EQ(line("C/ Sol 3, 29718 Vélez-Málaga").municipality, "Vélez-Málaga");
    const WrittenAddress palma = line("C/ Sol 3, Palma, Illes Balears");
    EXPECT_EQ(palma.municipality, "Palma");
    EXPECT_EQ(palma.province, "Illes Balears");
    EXPECT_EQ(line("Rúa Real 5, 15270 Cee, Coruña (A)").province, "Coruña (A)");
    EXPECT_EQ(line("C/ Sol 3, 46600 Alzira, Valencia/València").province, "Valencia/València");
    EXPECT_EQ(line("Carrer Nou 3, 08901 L'Hospitalet de Llobregat").municipality,
              "L'Hospitalet de Llobregat");
    EXPECT_EQ(line("C/ Sol 3 Dos Hermanas").municipality, "Dos Hermanas");
    EXPECT_EQ(
        line("28801 Alcalá de Henares (Madrid)"),
        (WrittenAddress{.postalCode = "28801", .municipality = "Alcalá de Henares", .province = "Madrid"}));
}

TEST(AddressLineTest, AnyLineBreakTabSemicolonBarOrDashSeparates) {
    for (const char* text : {"C/ Sol 3\n2º B\n28901 Getafe", "C/ Sol\t3\t2º B\t28901\tGetafe",
                             "C/ Sol;3;2º B;28901;Getafe", "C/ Sol 3 | 2º B | 28901 | Getafe",
                             "C/ Sol 3 - 2º B - 28901 - Getafe", "C/ Sol, 3. 2º B, 28901. Getafe"}) {
        const WrittenAddress read = line(text);
        EXPECT_EQ(read.street + read.number + read.postalCode + read.municipality, "Sol328901Getafe") << text;
        EXPECT_EQ(read.floor, "2º B") << text;
    }
}

TEST(AddressLineTest, WordsOfTheLanguagesOfSpain) {
    EXPECT_EQ(line("Carrer Major, 5, 2n 1a"),
              (WrittenAddress{.type = "Carrer", .street = "Major", .number = "5", .floor = "2n 1a"}));
    EXPECT_EQ(line("Rúa do Vilar 3, 1º"),
              (WrittenAddress{.type = "Rúa", .street = "do Vilar", .number = "3", .floor = "1º"}));
    EXPECT_EQ(line("Kale Nagusia 5"), (WrittenAddress{.type = "Kale", .street = "Nagusia", .number = "5"}));
    EXPECT_EQ(line("Errekalde kalea, 5, 2. ezkerra"),
              (WrittenAddress{.type = "kalea", .street = "Errekalde", .number = "5", .floor = "2. ezkerra"}));
}

TEST(AddressLineTest, RangesLettersAndSecondNumbers) {
    const auto number = [](const char* text) {
        const WrittenAddress read = line(text);
        return read.number + '|' + read.numberSuffix + '|' + read.numberEnd + '|' + read.floor;
    };
    EXPECT_EQ(number("C/ Sol 5-7"), "5||7|");
    EXPECT_EQ(number("C/ Sol 5 - 7"), "5||7|");
    EXPECT_EQ(number("C/ Sol 5 al 9"), "5||9|");
    EXPECT_EQ(number("C/ Sol 5 y 7"), "5||7|");
    EXPECT_EQ(number("C/ Sol 5B-7B"), "5|B|7B|");
    EXPECT_EQ(number("C/ Sol 12-3"), "12|||3"); // no range runs backwards
    EXPECT_EQ(number("C/ Sol 5, bis"), "5|BIS||");
    EXPECT_EQ(number("C/ Sol 5 A 3º B"), "5|A||3º B");
    EXPECT_EQ(number("C/ Sol 5 dup."), "5|DUP||");
    EXPECT_EQ(number("C/ Sol S / N"), "S/N|||");
    EXPECT_EQ(number("C/ Sol sin número"), "S/N|||");
}

TEST(AddressLineTest, AnArticleAfterACommaBelongsToTheName) {
    EXPECT_EQ(line("PASEO MAR, DE LA 18, 18813 Cuevas"), (WrittenAddress{.type = "PASEO",
                                                                         .street = "MAR, DE LA",
                                                                         .number = "18",
                                                                         .postalCode = "18813",
                                                                         .municipality = "Cuevas"}));
}

TEST(AddressLineTest, PersonsBuildingsAndCountriesStayInTheRest) {
    EXPECT_EQ(line("Juan Pérez\nEdificio Sol\nC/ Mayor 5\n28009 Madrid\nESPAÑA"),
              (WrittenAddress{.type = "C/",
                              .street = "Mayor",
                              .number = "5",
                              .rest = "Juan Pérez\nEdificio Sol, ESPAÑA",
                              .postalCode = "28009",
                              .municipality = "Madrid"}));
    EXPECT_EQ(line("Calle Mayor 5 tlf 915551234").rest, "tlf 915551234");
}

/// Whether one of the readings has these parts.
bool isAmong(const WrittenAddress& wanted, const char* text) {
    const auto readings = ambrel::readAddressLine(ambrel::test::ansi(text));
    return std::ranges::any_of(readings, [&](const AddressParts& one) { return written(one) == wanted; });
}

TEST(AddressLineTest, WhereOnlyTablesCanDecideThereAreSeveralReadings) {
    EXPECT_TRUE(
        isAmong({.type = "Calle", .street = "Mayor", .municipality = "Getafe"}, "Calle Mayor Getafe"));
    EXPECT_TRUE(isAmong({.type = "Calle", .street = "Mayor Getafe"}, "Calle Mayor Getafe"));
    EXPECT_TRUE(isAmong({.type = "Calle", .street = "Alfonso 13", .number = "5"}, "Calle Alfonso 13, 5"));
    EXPECT_TRUE(
        isAmong({.type = "Calle", .street = "Alfonso", .number = "13", .floor = "5"}, "Calle Alfonso 13, 5"));
    EXPECT_TRUE(isAmong({.street = "Mayor", .number = "5", .municipality = "Getafe"}, "Getafe Mayor 5"));
    EXPECT_TRUE(isAmong({.municipality = "Getafe"}, "Getafe"));
    EXPECT_TRUE(isAmong({.municipality = "Palma", .province = "Baleares"}, "Palma, Baleares"));
    EXPECT_TRUE(isAmong(
        {.type = "C/", .street = "Sol", .number = "3", .municipality = "Getafe", .province = "Madrid"},
        "C/ Sol 3 Getafe Madrid"));
}

TEST(StreetTextTest, TypeNumberAndFloorInAStreetsColumn) {
    const auto street = [](const char* text) {
        return written(ambrel::readStreetText(ambrel::test::ansi(text)).front());
    };
    EXPECT_EQ(
        street("C/ Mayor 5 bis, 2º izda."),
        (WrittenAddress{
            .type = "C/", .street = "Mayor", .number = "5", .numberSuffix = "BIS", .floor = "2º izda."}));
    EXPECT_EQ(street("MAYOR"), (WrittenAddress{.street = "MAYOR"}));
    EXPECT_EQ(street("Mayor, 5, Urb. Los Olmos"),
              (WrittenAddress{.street = "Mayor", .number = "5", .rest = "Urb. Los Olmos"}));
    EXPECT_EQ(street("MAYOR (ARIJA) 5"), (WrittenAddress{.street = "MAYOR (ARIJA)", .number = "5"}));
}

TEST(NumberTextTest, NumberLetterRangeAndFloorInANumbersColumn) {
    const auto number = [](const char* text) {
        return written(ambrel::readNumberText(ambrel::test::ansi(text)));
    };
    EXPECT_EQ(number("12"), (WrittenAddress{.number = "12"}));
    EXPECT_EQ(number("nº 12 bis, 3º B"),
              (WrittenAddress{.number = "12", .numberSuffix = "BIS", .floor = "3º B"}));
    EXPECT_EQ(number("12-14"), (WrittenAddress{.number = "12", .numberEnd = "14"}));
    EXPECT_EQ(number("s/n"), (WrittenAddress{.number = "S/N"}));
    EXPECT_EQ(number("km 3,5"), (WrittenAddress{.number = "KM 3,5"}));
    EXPECT_EQ(number("3º B"), (WrittenAddress{.floor = "3º B"}));
    EXPECT_EQ(number("12 junto al río"), (WrittenAddress{.number = "12", .rest = "junto al río"}));
    EXPECT_EQ(number(""), WrittenAddress{});
}

} // namespace
