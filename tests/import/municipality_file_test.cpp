// Lines of municipality files and their number ranges.
#include "import/MunicipalityFile.h"

#include <gtest/gtest.h>

#include <array>

#include "support/TableTest.h"

namespace {

using ambrel::ImportedStreet;
using ambrel::test::ansi;

std::array<int, 4> numbers(const std::string& text) {
    std::array<int, 4> bounds{};
    ambrel::ExtraeNumeracion(text, bounds[0], bounds[1], bounds[2], bounds[3]);
    return bounds;
}

using Bounds = std::array<int, 4>;

TEST(NumberRanges, AreReadFromTheirGroups) {
    EXPECT_EQ(numbers("MAYOR (IMPARES DEL 1 AL 33)(PARES DEL 2 AL 40)"), (Bounds{1, 33, 2, 40}));
    EXPECT_EQ(numbers("(IMPARES DEL 1 AL 33)"), (Bounds{1, 33, 0, 0}));
    EXPECT_EQ(numbers("( PARES DEL 2 AL 40 )"), (Bounds{0, 0, 2, 40}));
    EXPECT_EQ(numbers("MAYOR"), (Bounds{}));
}

TEST(NumberRanges, OddToTheEndAre9999) {
    EXPECT_EQ(numbers("(IMPARES DEL 7 AL FINAL)"), (Bounds{7, 9999, 0, 0}));
}

TEST(NumberRanges, EvenToTheEndAre9998) {
    EXPECT_EQ(numbers("(PARES DEL 4 AL FINAL)"), (Bounds{0, 0, 4, 9998}));
}

TEST(NumberRanges, OfASingleNumberHaveItTwice) {
    EXPECT_EQ(numbers("(IMPAR DEL 5)(PAR DEL 8)"), (Bounds{5, 5, 8, 8}));
}

TEST(NumberRanges, OddWithoutClosingBracketBecomeTheEvenOnes) {
    EXPECT_EQ(numbers("MAYOR (IMPARES DEL 1 AL 9"), (Bounds{0, 0, 1, 9}));
}

TEST(NumberRanges, EvenBeforeOddAreMisread) {
    EXPECT_EQ(numbers("(PARES DEL 2 AL 8)(IMPARES DEL 1 AL 9)"), (Bounds{0, 8, 1, 9}));
}

TEST(NumberRanges, AreOnlyWrittenWhereTheTextHasBrackets) {
    int oddFirst = 1, oddLast = 2, evenFirst = 3, evenLast = 4;
    ambrel::ExtraeNumeracion("SIN NADA", oddFirst, oddLast, evenFirst, evenLast);
    ambrel::ExtraeNumeracion("(S/N)", oddFirst, oddLast, evenFirst, evenLast);
    EXPECT_EQ((Bounds{oddFirst, oddLast, evenFirst, evenLast}), (Bounds{1, 2, 3, 4}));
}

TEST(NumberRanges, OfOddTextNeverFail) {
    EXPECT_EQ(numbers("(IMPARES DEL X AL Y)(PARES DEL AL"), (Bounds{}));
    EXPECT_EQ(numbers("(IMPAR)(PAR)"), (Bounds{}));
    EXPECT_EQ(numbers(")(PAR"), (Bounds{}));
    EXPECT_EQ(numbers("("), (Bounds{}));
    EXPECT_EQ(numbers("(IMPARES DEL 99999999999 AL 3)"), (Bounds{0, 3, 0, 0}));
}

ImportedStreet read(const std::string& line) {
    return ambrel::readMunicipalityLine(ansi(line), [](const std::string& name) { return "<" + name + ">"; });
}

TEST(MunicipalityLine, HasCodeNameTypeAndRanges) {
    EXPECT_EQ(read("28001:Mayor, calle (IMPARES DEL 1 AL 33)(PARES DEL 2 AL FINAL)"),
              (ImportedStreet{.type = "<CALLE (IMPARES DEL 1 AL 33)(PARES DEL 2 AL FINAL)>",
                              .name = "Mayor",
                              .postalCode = "28001",
                              .oddFirst = 1,
                              .oddLast = 33,
                              .evenFirst = 2,
                              .evenLast = 9998}));
}

TEST(MunicipalityLine, WithoutColonHasNoPostalCode) {
    EXPECT_EQ(read("Mayor, calle"), (ImportedStreet{.type = "<CALLE>", .name = "Mayor"}));
}

TEST(MunicipalityLine, KeepsTheBlanksOfItsPostalCode) {
    EXPECT_EQ(read("28001 : Mayor").postalCode, "28001 ");
    EXPECT_EQ(read("28001 : Mayor").name, "Mayor");
}

TEST(MunicipalityLine, WithATypeInCapitalsKeepsItInTheName) {
    EXPECT_EQ(read("28001:Mayor, CALLE"), (ImportedStreet{.name = "Mayor, CALLE", .postalCode = "28001"}));
}

TEST(MunicipalityLine, CountsAccentedLettersAsLowerCase) {
    EXPECT_EQ(read("Mayor, ángulo").type, ansi("<ÁNGULO>"));
    EXPECT_EQ(read("Mayor, Ángulo").type, "");
}

TEST(MunicipalityLine, WithTwoTypesTakesTheFirstCodeAlong) {
    EXPECT_EQ(read("Mayor, calle, plaza").type, "<<PLAZA> CALLE>");
    EXPECT_EQ(read("Mayor, calle, plaza").name, "Mayor");
}

TEST(MunicipalityLine, ThatIsBlankIsAnEmptyStreet) {
    EXPECT_EQ(read(""), ImportedStreet{});
    EXPECT_EQ(read("  \t\r"), ImportedStreet{});
}

TEST(MunicipalityLine, OfMoreThan45CharactersIsCut) {
    EXPECT_EQ(read("28001:" + std::string(50, 'x')).name, std::string(45, 'x'));
}

TEST(MunicipalityLine, KeepsBracketsThatHoldNoNumbers) {
    EXPECT_EQ(read("28001:Mayor (S/N)").name, "Mayor (S/N)");
    EXPECT_EQ(read("28001:Mayor (S/N) (PARES DEL 2 AL 4)").name, "Mayor");
}

TEST(MunicipalityLine, OfOddTextNeverFails) {
    for (const char* const line :
         {",", ", ", ",,a", ":", "::", "(", ")", ", a", "a, b, c, d", "(((:,,, x", "\xff, \xe1"}) {
        EXPECT_NO_THROW(std::ignore =
                            ambrel::readMunicipalityLine(line, [](const std::string& name) { return name; }))
            << line;
    }
}

TEST(MunicipalityLine, OfAMillionBracketsIsReadAtOnce) {
    const std::string text = "(IMPARES DEL " + std::string(2'000'000, '(') + "3 AL 5)(PARES DEL " +
                             std::string(2'000'000, '(') + "4)";
    EXPECT_EQ(numbers(text), (Bounds{3, 5, 4, 4}));
    std::string words = "(PAR";
    for (int i = 0; i < 1'000'000; ++i) {
        words += "AL";
    }
    EXPECT_EQ(numbers(words + "6"), (Bounds{0, 0, 0, 6}));
}

TEST(MunicipalityLine, OfAnEndlessPostalCodeIsCut) {
    EXPECT_EQ(read(std::string(1'000'000, '9') + ":Mayor").postalCode, std::string(45, '9'));
}

std::vector<ImportedStreet> readText(const std::string& text) {
    return ambrel::readMunicipalityText(text, [](const std::string&) { return ""; });
}

TEST(MunicipalityText, HasAStreetForEachLine) {
    EXPECT_TRUE(readText("").empty());
    EXPECT_EQ(readText("\n").size(), 1U);
    EXPECT_EQ(readText("1:A\r\n\n2:B"),
              (std::vector<ImportedStreet>{
                  {.name = "A", .postalCode = "1"}, {}, {.name = "B", .postalCode = "2"}}));
}

TEST(MunicipalityText, OfTooManyLinesOrBytesIsRefused) {
    EXPECT_EQ(readText(std::string(ambrel::mostMunicipalityLines, '\n')).size(),
              ambrel::mostMunicipalityLines);
    EXPECT_THROW(readText(std::string(ambrel::mostMunicipalityLines + 1, '\n')),
                 ambrel::MunicipalityFileError);
    EXPECT_EQ(readText(std::string(ambrel::largestMunicipalityFile, 'x')).size(), 1U);
    EXPECT_THROW(readText(std::string(ambrel::largestMunicipalityFile + 1, 'x')),
                 ambrel::MunicipalityFileError);
}

} // namespace
