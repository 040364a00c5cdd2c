// Texts and numbers.
#include "services/Rnumcad.h"

#include <gtest/gtest.h>

#include <climits>

#include "support/Tables.h"

namespace {

using ambrel::isAlphanumeric;
using ambrel::test::ansi;

TEST(Espacios, PadsWithBlanksOnTheRight) {
    EXPECT_EQ(Espacios("SOL", 6), "SOL   ");
    EXPECT_EQ(Espacios("", 2), "  ");
}

TEST(Espacios, CutsALongerTextToTheWidth) { EXPECT_EQ(Espacios("ALCALA", 3), "ALC"); }

TEST(Espacios, LeavesTheTextAsItIsForWidthZeroOrLess) {
    EXPECT_EQ(Espacios("SOL ", 0), "SOL ");
    EXPECT_EQ(Espacios("SOL", -1), "SOL");
}

TEST(StrLeft, TakesTheFirstCharacters) {
    EXPECT_EQ(StrLeft("28013", 2), "28");
    EXPECT_EQ(StrLeft("28", 5), "28");
    EXPECT_EQ(StrLeft("", 1), "");
}

TEST(StrLeft, IsEmptyForZeroOrLess) {
    EXPECT_EQ(StrLeft("28013", 0), "");
    EXPECT_EQ(StrLeft("28013", -3), "");
}

TEST(StrRight, TakesTheLastCharacters) {
    EXPECT_EQ(StrRight("0028", 2), "28");
    EXPECT_EQ(StrRight("8", 2), "8");
    EXPECT_EQ(StrRight("0028", 0), "");
    EXPECT_EQ(StrRight("0028", -1), "");
}

TEST(UpperCase, TurnsAccentedLettersToo) {
    EXPECT_EQ(UpperCase(ansi("Ángel Muñoz, 3º çïœÿ")), ansi("ÁNGEL MUÑOZ, 3º ÇÏŒŸ"));
}

TEST(UpperCase, LeavesLettersWithoutCapital) { EXPECT_EQ(UpperCase(ansi("ß1ªµ")), ansi("ß1ªµ")); }

TEST(IntCad, WritesDigitsWithoutPadding) {
    EXPECT_EQ(Int_Cad(8), "8");
    EXPECT_EQ(Int_Cad(-12), "-12");
    EXPECT_EQ(Int_Cad(99000000), "99000000");
}

TEST(CadInt, ReadsLeadingZerosAsDecimal) {
    EXPECT_EQ(Cad_Int("08"), 8);
    EXPECT_EQ(Cad_Int("0010"), 10);
}

TEST(CadInt, ToleratesBlanksAroundAndASign) {
    EXPECT_EQ(Cad_Int("  12 "), 12);
    EXPECT_EQ(Cad_Int("-5"), -5);
    EXPECT_EQ(Cad_Int("+5"), 5);
}

TEST(CadInt, GivesZeroForWhatIsNoNumber) {
    for (const char* const text : {"", "   ", "S/N", "12B", "1 2", "1.5", "+-3", "--3", "+", "-", "0x1F"}) {
        EXPECT_EQ(Cad_Int(text), 0) << text;
    }
}

TEST(CadInt, GivesZeroForWhatDoesNotFit) {
    EXPECT_EQ(Cad_Int("2147483647"), INT_MAX);
    EXPECT_EQ(Cad_Int("2147483648"), 0);
    EXPECT_EQ(Cad_Int("99999999999999999999"), 0);
}

TEST(WithoutBlanks, TakesThemOffBothEndsOnly) {
    EXPECT_EQ(ambrel::withoutBlanks("  A  B "), "A  B");
    EXPECT_EQ(ambrel::withoutBlanks("AB"), "AB");
    EXPECT_EQ(ambrel::withoutBlanks("   "), "");
    EXPECT_EQ(ambrel::withoutBlanks(""), "");
    EXPECT_EQ(ambrel::withoutBlanks("\tA\xA0"), "\tA\xA0") << "only blanks count";
}

/// The characters of a text that count, in Windows-1252.
std::string alphanumericsOf(const std::string& utf8) {
    std::string found = ansi(utf8);
    std::erase_if(found, [](char c) { return !isAlphanumeric(static_cast<unsigned char>(c)); });
    return found;
}

TEST(Alphanumeric, DigitsAndLettersOfWindows1252) {
    const std::string all = "0123456789AZazÑñÁüÇÿŸŠžŒßªºƒ";
    EXPECT_EQ(alphanumericsOf(all), ansi(all));
}

TEST(Alphanumeric, NoSuperscriptsFractionsOrSigns) {
    EXPECT_EQ(alphanumericsOf("¹²³¼½¾ ,.-/'€×÷°·@[`{"), "");
}

TEST(Alphanumeric, NoControlCharacters) {
    for (const int c : {0x00, 0x0D, 0x1B, 0x7F, 0x81, 0x8D, 0x8F, 0x90, 0x9D}) {
        EXPECT_FALSE(isAlphanumeric(static_cast<unsigned char>(c))) << c;
    }
}

} // namespace
