// Names in a narrower column.
#include "directory/StreetNames.h"

#include <gtest/gtest.h>

namespace ambrel::directory {
namespace {

using Names = std::vector<std::string>;

/// So many A, and an end.
std::string as(std::size_t count, const char* end = "") {
    std::string text(count, 'A');
    text += end;
    return text;
}

Names settled(const Names& names, std::size_t width = 45) {
    NamesInWidth all(width);
    std::uint32_t key = 700;
    for (const std::string& name : names) {
        all.add(++key, name);
    }
    const auto result = all.settle();
    return {result.begin(), result.end()};
}

TEST(PlainCapitals, LoseTheirAccentsAndKeepTheirLetters) {
    EXPECT_EQ(plainCapitals("Alegr\xED"
                            "a-Dulantzi"),
              "ALEGRIA-DULANTZI");
    EXPECT_EQ(plainCapitals("\xC0\xE8\xCD\xF4\xD9 Logro\xF1o, Ma\xE7"
                            "anet, Ag\xFC"
                            "ero"),
              "AEIOU LOGRO\xD1O, MA\xC7"
              "ANET, AG\xDC"
              "ERO");
}

TEST(PlainCapitals, HaveOneBlankBetweenWordsAsLookUpsWriteThem) {
    EXPECT_EQ(plainCapitals("  SAN   ROQUE\xA0 Y  SOL "), "SAN ROQUE Y SOL");
    EXPECT_EQ(plainCapitals("   "), "");
}

TEST(NamesInWidth, ThoseThatFitStayAsTheyAre) {
    const Names names = {"MAYOR", as(45), "MAYOR", "NUESTRA SE\xD1ORA DEL PILAR"};
    EXPECT_EQ(settled(names), names);
}

TEST(NamesInWidth, WordsGetTheirUsualShortFormsFromTheEnd) {
    EXPECT_EQ(settled({"DOCTOR DON FRANCISCO FERNANDEZ Y DOCTOR GONZALEZ"}),
              (Names{"DOCTOR DON FRANCISCO FERNANDEZ Y DOCTOR GLEZ"}));
    EXPECT_EQ(settled({"NUESTRA SE\xD1ORA DE LA VIRGEN DE LOS DESAMPARADOSX"}),
              (Names{"NUESTRA SRA DE LA VIRG DE LOS DESAMPARADOSX"}));
}

TEST(NamesInWidth, ANameThatIsStillTooLongIsCut) {
    EXPECT_EQ(settled({as(44, " BCDEF")}), (Names{as(44)}));
    EXPECT_EQ(settled({as(50)}), (Names{as(45)}));
}

TEST(NamesInWidth, ACutLeavesNoBracketOpen) {
    EXPECT_EQ(settled({as(30, " (XXXXXXXXXXXXXXXXX)")}), (Names{as(30, " (XXXXXXXXXXXX)")}));
    EXPECT_EQ(settled({as(41, " (XXXXX)")}), (Names{as(41)}));
    EXPECT_EQ(settled({as(20, " (X) ZZZZZZZZZZZZZZZZZZZZZZZZ")}),
              (Names{as(20, " (X) ZZZZZZZZZZZZZZZZZZZZ")}));
    EXPECT_EQ(settled({as(30, " (XXXXXXXXXXXXXXXXY)"), as(30, " (XXXXXXXXXXXXXXXXZ)")}),
              (Names{as(30, " (XXXXXX) (701)"), as(30, " (XXXXXX) (702)")}));
}

TEST(NamesInWidth, NamesAlikeButForTheirEndsKeepApartByTheirKeys) {
    EXPECT_EQ(settled({as(46, "1"), as(46, "2"), "MAYOR"}),
              (Names{as(39, " (701)"), as(39, " (702)"), "MAYOR"}));
}

TEST(NamesInWidth, ACutNameIsNeverThatOfAnotherStreetThatFits) {
    EXPECT_EQ(settled({as(45), as(46)}), (Names{as(45), as(39, " (702)")}));
}

TEST(NamesInWidth, NamesakesStayNamesakes) {
    const std::string name = as(50);
    EXPECT_EQ(settled({name, name}), (Names{as(45), as(45)}));
}

} // namespace
} // namespace ambrel::directory
