// Texts as the bytes of a column.
#include "loading/row_conversion.h"

#include <gtest/gtest.h>

namespace loading {
namespace {

using dbase::Column;
using dbase::ColumnType;

Column characters(std::uint16_t width) {
    return {.name = "C", .type = ColumnType::Character, .width = width};
}
Column number(std::uint16_t width, std::uint8_t decimals = 0) {
    return {.name = "N", .type = ColumnType::Numeric, .width = width, .decimals = decimals};
}
const Column logical{.name = "L", .type = ColumnType::Logical, .width = 1};
const Column date{.name = "D", .type = ColumnType::Date, .width = 8};

/// The bytes of a converted text, or "!" and why it cannot be converted.
std::string encoded(std::string_view text, const Column& column,
                    const dbase::CodePage& page = dbase::CodePage::windows1252(),
                    Integers integers = Integers::AnyThatFits) {
    std::string raw(column.width, '#');
    const auto problem = CellEncoder(page, integers).encode(text, column, raw);
    return problem ? '!' + *problem : raw;
}

std::string inSixteenBits(std::string_view text) {
    return encoded(text, number(6), dbase::CodePage::windows1252(), Integers::SixteenBits);
}

bool isRefused(const std::string& result) { return result.starts_with('!'); }

TEST(CellEncoder, TextIsPaddedToItsColumn) {
    EXPECT_EQ(encoded("AB", characters(4)), "AB  ");
    EXPECT_EQ(encoded(" AB", characters(4)), " AB ");
    EXPECT_EQ(encoded("", characters(3)), "   ");
}

TEST(CellEncoder, TextLongerThanItsColumnIsRefused) {
    EXPECT_EQ(encoded("ABCDE", characters(4)), "!«ABCDE» ocupa 5 caracteres y en la columna caben 4");
    EXPECT_EQ(encoded("AB", characters(1)), "!«AB» ocupa 2 caracteres y en la columna cabe 1");
}

TEST(CellEncoder, AccentedLettersTakeOneByteEach) {
    EXPECT_EQ(encoded("ÑÚ€", characters(3)), "\xD1\xDA\x80");
    EXPECT_TRUE(isRefused(encoded("ÑÚ€x", characters(3))));
}

TEST(CellEncoder, TrailingBlanksDoNotCount) { EXPECT_EQ(encoded("AB    ", characters(3)), "AB "); }

TEST(CellEncoder, CharacterOutsideTheCodePageIsNamed) {
    EXPECT_EQ(encoded("Łódź", characters(9)), "!«Łódź» lleva el carácter «Ł», que no existe en Windows-1252");
    EXPECT_EQ(encoded("uno 中", characters(9)),
              "!«uno 中» lleva el carácter «中», que no existe en Windows-1252");
}

TEST(CellEncoder, TextThatIsNoUtf8IsRefused) {
    for (const std::string_view text : {"A\xD1", "\x80", "\xC0\x80", "\xE2\x82", "\xFF", "\xED\xA0\x80"}) {
        EXPECT_TRUE(isRefused(encoded(text, characters(9))));
    }
    EXPECT_EQ(encoded("A\xD1", characters(9)), "!«A�» no está en UTF-8");
}

TEST(CellEncoder, NullCharacterIsRefused) {
    EXPECT_EQ(encoded(std::string_view("A\0B", 3), characters(9)), "!«A�B» lleva un carácter nulo");
}

TEST(CellEncoder, OtherCodePagesAreHonoured) {
    const dbase::CodePage& page = dbase::CodePage::ofDriver(0x02);
    EXPECT_EQ(encoded("Ñ", characters(2), page), "\xA5 ");
    EXPECT_TRUE(isRefused(encoded("€", characters(2), page)));
}

TEST(CellEncoder, IntegersAreRightJustified) {
    EXPECT_EQ(encoded("7", number(4)), "   7");
    EXPECT_EQ(encoded(" -7 ", number(4)), "  -7");
    EXPECT_EQ(encoded("+007", number(4)), "   7");
    EXPECT_EQ(encoded("-0", number(4)), "   0");
    EXPECT_EQ(encoded("12.00", number(4)), "  12");
    EXPECT_EQ(encoded("", number(4)), "    ");
}

TEST(CellEncoder, WhatIsNoIntegerIsRefused) {
    EXPECT_EQ(encoded("1.5", number(4)), "!«1.5» no es un número entero");
    EXPECT_EQ(encoded("uno", number(4)), "!«uno» no es un número");
    for (const std::string_view text : {"-", ".", "1e3", "1,5", "1 2", "--1", "0x1"}) {
        EXPECT_TRUE(isRefused(encoded(text, number(4)))) << text;
    }
}

TEST(CellEncoder, NumberWiderThanItsColumnIsRefused) {
    EXPECT_EQ(encoded("12345", number(4)), "!«12345» ocupa 5 caracteres y en la columna caben 4");
    EXPECT_TRUE(isRefused(encoded("-1234", number(4))));
    EXPECT_TRUE(isRefused(encoded("12345.6", number(7, 2))));
}

TEST(CellEncoder, PostalIntegersHaveSixteenBits) {
    EXPECT_EQ(inSixteenBits("32767"), " 32767");
    EXPECT_EQ(inSixteenBits("-32768"), "-32768");
    EXPECT_EQ(inSixteenBits("32768"), "!«32768» no está entre -32768 y 32767");
    EXPECT_TRUE(isRefused(inSixteenBits("-32769")));
    EXPECT_TRUE(isRefused(inSixteenBits("100000")));
    EXPECT_EQ(encoded("100000", number(6)), "100000");
}

TEST(CellEncoder, DecimalsAreFilledUp) {
    EXPECT_EQ(encoded("1.5", number(8, 3)), "   1.500");
    EXPECT_EQ(encoded("-.5", number(8, 2)), "   -0.50");
    EXPECT_EQ(encoded("5.", number(8, 2)), "    5.00");
    EXPECT_EQ(encoded("3", number(8, 2)), "    3.00");
    EXPECT_EQ(encoded("1.2500", number(8, 2)), "    1.25");
}

TEST(CellEncoder, MoreDecimalsThanTheColumnHasAreRefused) {
    EXPECT_EQ(encoded("1.255", number(8, 2)), "!«1.255» tiene más de 2 decimales");
}

TEST(CellEncoder, WideNumbersKeepEveryDigit) {
    EXPECT_EQ(encoded("12345678901234567.89", number(20, 2)), "12345678901234567.89");
}

TEST(CellEncoder, LogicalsHaveSeveralSpellings) {
    for (const std::string_view text : {"True", "true", "TRUE", "T", "t", "S", "s", "1", "VERDADERO"}) {
        EXPECT_EQ(encoded(text, logical), "T") << text;
    }
    for (const std::string_view text : {"False", "FALSE", "F", "f", "N", "n", "0", "Falso"}) {
        EXPECT_EQ(encoded(text, logical), "F") << text;
    }
    EXPECT_EQ(encoded("", logical), " ");
}

TEST(CellEncoder, WhatIsNoLogicalIsRefused) {
    for (const std::string_view text : {"Si", "2", "Trueno", "?", "verdaderos"}) {
        EXPECT_TRUE(isRefused(encoded(text, logical))) << text;
    }
}

TEST(CellEncoder, DatesComeWithAndWithoutHyphens) {
    EXPECT_EQ(encoded("2024-02-29", date), "20240229");
    EXPECT_EQ(encoded("20240229", date), "20240229");
    EXPECT_EQ(encoded("", date), "        ");
}

TEST(CellEncoder, WhatIsNoDateIsRefused) {
    for (const std::string_view text : {"2023-02-29", "29/02/2024", "2024-2-29", "202402291", "2024022",
                                        "-2024229", "20-240229 ", "2024-02--9"}) {
        EXPECT_TRUE(isRefused(encoded(text, date))) << text;
    }
}

TEST(CellEncoder, MemosAreNotWritten) {
    EXPECT_TRUE(isRefused(encoded("1", {.name = "M", .type = ColumnType::Memo, .width = 10})));
}

TEST(CellEncoder, OnlyPostalTablesLimitTheirIntegers) {
    dbase::Schema schema;
    std::string raw(6, ' ');
    EXPECT_TRUE(CellEncoder(schema, "/datos/postal.dbf").encode("99999", number(6), raw));
    EXPECT_FALSE(CellEncoder(schema, "/datos/OTRA.DBF").encode("99999", number(6), raw));
}

} // namespace
} // namespace loading
