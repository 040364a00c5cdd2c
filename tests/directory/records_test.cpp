// Lines of the official files taken apart.
#include "directory/Records.h"

#include <gtest/gtest.h>

#include <string>

#include "tools/edition/OfficialLines.h"

namespace ambrel::directory {
namespace {

edition::StretchText oddStretch() {
    return {.place = 1001,
            .unit = 17,
            .street = 1001,
            .postalCode = 1240,
            .first = 1,
            .last = 39,
            .entity = "VILLARRIBA",
            .nucleus = "*DISEMINADO*",
            .streetName = "CA\xD1\x41"
                          "DA"};
}

std::string refusalOf(const std::string& line) {
    StretchLine stretch;
    const Refusal refusal = read(FixedLine(line), stretch);
    return refusal != nullptr ? refusal : "";
}

TEST(StretchRecord, EveryColumnIsRead) {
    const std::string line = edition::lineOf(oddStretch());
    ASSERT_EQ(line.size(), 273U);
    StretchLine stretch;
    ASSERT_EQ(read(FixedLine(line), stretch), nullptr);
    EXPECT_EQ(stretch.place, 1001U);
    EXPECT_EQ(stretch.unit, 17U);
    EXPECT_EQ(stretch.street, 1001U);
    EXPECT_EQ(stretch.pseudo, 0U);
    EXPECT_EQ(stretch.postalCode, 1240U);
    EXPECT_EQ(stretch.numbering, Numbering::Odd);
    EXPECT_EQ(stretch.first, 1);
    EXPECT_EQ(stretch.last, 39);
    EXPECT_EQ(stretch.entity(), "VILLARRIBA");
    EXPECT_EQ(stretch.nucleus(), "*DISEMINADO*");
    EXPECT_EQ(stretch.streetName(), "CA\xD1\x41"
                                    "DA");
}

TEST(StretchRecord, MayEndAnywhereAfterItsNumbers) {
    const std::string line = edition::lineOf(oddStretch());
    StretchLine stretch;
    for (std::size_t length = 57; length <= line.size(); ++length) {
        ASSERT_EQ(read(FixedLine(std::string_view(line).substr(0, length)), stretch), nullptr) << length;
        EXPECT_EQ(stretch.last, 39);
    }
    for (std::size_t length = 0; length < 57; ++length) {
        EXPECT_NE(read(FixedLine(std::string_view(line).substr(0, length)), stretch), nullptr) << length;
    }
}

TEST(StretchRecord, LettersStandBesideTheNumbers) {
    auto text = oddStretch();
    text.firstLetter = 'A';
    text.lastLetter = 'C';
    const std::string line = edition::lineOf(text);
    StretchLine stretch;
    ASSERT_EQ(read(FixedLine(line), stretch), nullptr);
    EXPECT_EQ(stretch.firstLetter, 'A');
    EXPECT_EQ(stretch.lastLetter, 'C');
}

TEST(StretchRecord, WithoutNumbersHasZeros) {
    auto text = oddStretch();
    text.numbering = '0';
    text.first = text.last = 0;
    const std::string line = edition::lineOf(text);
    StretchLine stretch;
    ASSERT_EQ(read(FixedLine(line), stretch), nullptr);
    EXPECT_EQ(stretch.numbering, Numbering::None);
    EXPECT_EQ(stretch.first + stretch.last, 0);
    EXPECT_EQ(stretch.firstLetter, 'S');
}

TEST(StretchRecord, OfAPseudoStreetHasItsKeyAndDescription) {
    auto text = oddStretch();
    text.street = 0;
    text.pseudo = 77;
    text.pseudoName = "FINCA LA ROSA";
    const std::string line = edition::lineOf(text);
    StretchLine stretch;
    ASSERT_EQ(read(FixedLine(line), stretch), nullptr);
    EXPECT_EQ(stretch.pseudo, 77U);
    EXPECT_EQ(stretch.pseudoName(), "FINCA LA ROSA");
}

TEST(StretchRecord, WhatCannotBeIsRefusedWithItsReason) {
    const auto refusalWith = [](auto change) {
        auto text = oddStretch();
        change(text);
        return refusalOf(edition::lineOf(text));
    };
    EXPECT_EQ(refusalWith([](auto& text) { text.place = 53001; }),
              "no empieza por una provincia y un municipio");
    EXPECT_EQ(refusalWith([](auto& text) { text.street = 0; }), "no es de ninguna vía ni seudovía");
    EXPECT_EQ(refusalWith([](auto& text) { text.postalCode = 0; }), "no tiene un código postal");
    EXPECT_EQ(refusalWith([](auto& text) { text.postalCode = 28000; }), "no tiene un código postal");
    EXPECT_EQ(refusalWith([](auto& text) { text.numbering = '3'; }), "el tipo de numeración no es 0, 1 ni 2");
    EXPECT_EQ(refusalWith([](auto& text) { text.first = 2; }),
              "los números del tramo no son de su lado, pares o impares");
    EXPECT_EQ(refusalWith([](auto& text) { text.first = 41; }),
              "el último número del tramo es menor que el primero");
    EXPECT_EQ(refusalWith([](auto& text) { text.streetName = "A\tB"; }),
              "el nombre lleva signos que no son texto");
    EXPECT_EQ(refusalWith([](auto& text) { text.streetName = "CAÑADA"; }), // two bytes for a letter
              "parece escrita en UTF-8; los ficheros están en ISO-8859-1");
    EXPECT_EQ(refusalOf("CPRO;CMUN;DIST"), "no empieza por una provincia y un municipio");
}

TEST(StreetRecord, IsReadInBothLayouts) {
    for (const bool repeatsName : {false, true}) {
        const std::string line = edition::streetLine(1001, 1001, "KALE",
                                                     "TORRE ALTA DE LA CA\xD1\x41"
                                                     "DA REAL",
                                                     repeatsName);
        StreetLine street;
        ASSERT_EQ(read(FixedLine(line), repeatsName, street), nullptr);
        EXPECT_EQ(street.place, 1001U);
        EXPECT_EQ(street.street, 1001U);
        EXPECT_EQ(street.type, "KALE");
        EXPECT_EQ(street.name, "TORRE ALTA DE LA CA\xD1\x41"
                               "DA REAL");
    }
}

TEST(StreetRecord, WithoutAFullNameTakesTheShortOne) {
    for (const bool repeatsName : {false, true}) {
        std::string line = edition::streetLine(1001, 1001, "KALE", "TORREALTA", repeatsName);
        std::fill_n(line.begin() + (repeatsName ? 57 : 33), 50, ' ');
        StreetLine street;
        ASSERT_EQ(read(FixedLine(line), repeatsName, street), nullptr);
        EXPECT_EQ(street.name, "TORREALTA");
    }
}

TEST(StreetRecord, WithoutKeyOrNameIsRefused) {
    StreetLine street;
    EXPECT_NE(read(FixedLine(edition::streetLine(1001, 0, "KALE", "A")), true, street), nullptr);
    EXPECT_NE(read(FixedLine(edition::streetLine(1001, 1, "KALE", "")), true, street), nullptr);
    EXPECT_NE(read(FixedLine(edition::streetLine(1001, 1, "KALE", "CAÑADA")), true, street), nullptr);
}

TEST(PseudoRecord, IsReadInBothLayouts) {
    for (const bool repeatsName : {false, true}) {
        const std::string line = edition::pseudoLine(1001, 12, "FINCA LA ROSA", repeatsName);
        PseudoLine pseudo;
        ASSERT_EQ(read(FixedLine(line), repeatsName, pseudo), nullptr);
        EXPECT_EQ(pseudo.place, 1001U);
        EXPECT_EQ(pseudo.pseudo, 12U);
        EXPECT_EQ(pseudo.name, "FINCA LA ROSA");
    }
}

TEST(UnitRecord, HasTheNamesOfMunicipalityEntityAndNucleus) {
    const std::string line = edition::unitLine(1001, 10203, "VILLARRIBA", "ALDEA (LA)", "*DISEMINADO*");
    UnitLine unit;
    ASSERT_EQ(read(FixedLine(line), unit), nullptr);
    EXPECT_EQ(unit.place, 1001U);
    EXPECT_EQ(unit.unit, 10203U);
    EXPECT_EQ(unit.municipality, "VILLARRIBA");
    EXPECT_EQ(unit.entity, "ALDEA (LA)");
    EXPECT_EQ(unit.nucleus, "*DISEMINADO*");
}

} // namespace
} // namespace ambrel::directory
