// Trimming: which characters count as surrounding, and that nothing else is taken away.
#include "dbase/system/trim.h"

#include <gtest/gtest.h>

#include <string>

namespace dbase {
namespace {

using namespace std::string_view_literals;

TEST(Trim, LeadingBlanksGoAndTrailingOnesStay) {
    EXPECT_EQ(withoutLeadingBlanks("  CALLE MAYOR "), "CALLE MAYOR ");
    EXPECT_EQ(withoutTrailingBlanks("  CALLE MAYOR "), "  CALLE MAYOR");
}

TEST(Trim, BothEndsGoAndTheInsideStays) { EXPECT_EQ(trimmed("  A  B  ", isBlank), "A  B"); }

TEST(Trim, NothingIsLeftOfBlanksAndOfAnEmptyText) {
    for (const std::string_view text : {""sv, " "sv, "   "sv}) {
        EXPECT_EQ(withoutLeadingBlanks(text), "");
        EXPECT_EQ(withoutTrailingBlanks(text), "");
        EXPECT_EQ(trimmedLine(text), "");
    }
}

TEST(Trim, OnlyTheBlankIsABlank) {
    constexpr std::string_view text = "\t\0A\n\xA0"sv;
    EXPECT_EQ(trimmed(text, isBlank), text);
}

TEST(Trim, LineLosesTabsLineEndsAndOtherControlCharacters) {
    EXPECT_EQ(trimmedLine("\t \0\x01"
                          "CALLE\tMAYOR \v\f\r\n"sv),
              "CALLE\tMAYOR");
}

TEST(Trim, LineKeepsTheNonBreakingSpaceAndLettersWithHighBytes) {
    EXPECT_EQ(trimmedLine("\xA0\xD1\xA0"), "\xA0\xD1\xA0");
    EXPECT_EQ(trimmedLine("\x7F"), "\x7F");
}

TEST(Trim, TextIsAPartOfTheOneGiven) {
    const std::string_view text = "  A ";
    EXPECT_EQ(trimmed(text, isBlank).data(), text.data() + 2);
}

} // namespace
} // namespace dbase
