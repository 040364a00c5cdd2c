#include "report/ShownText.h"

#include <gtest/gtest.h>

using report::shownText;

TEST(ShownText, LeavesOrdinaryTextAsItIs) {
    EXPECT_EQ(shownText("C/ Peñón, 3º «B» & <Hijos> 😀"), "C/ Peñón, 3º «B» & <Hijos> 😀");
    EXPECT_EQ(shownText(""), "");
}

TEST(ShownText, ShowsEveryKindOfLineBreakAsOneSign) {
    EXPECT_EQ(shownText("a\nb\rc\r\nd\ve\ff"), "a↵b↵c↵d↵e↵f");
    EXPECT_EQ(shownText("a\u2028b\u2029c\u0085d"), "a↵b↵c↵d");
    EXPECT_EQ(shownText("a\tb"), "a b");
}

TEST(ShownText, MarksCharactersWithoutAShape) {
    EXPECT_EQ(shownText(std::string_view("a\0b\x01"
                                         "c\x1B\x7F",
                                         7)),
              "a\uFFFDb\uFFFDc\uFFFD\uFFFD");
    EXPECT_EQ(shownText("a\u0081b\uFEFFc\uFFFEd\u200Be"), "a\uFFFDb\uFFFDc\uFFFDd\uFFFDe");
}

TEST(ShownText, MarksWhatWouldTurnTheDirectionOfWriting) {
    EXPECT_EQ(shownText("MAYOR \u202E5 ROYAM\u2066"), "MAYOR \uFFFD5 ROYAM\uFFFD");
}

TEST(ShownText, MarksEachByteThatIsNotUtf8) {
    EXPECT_EQ(shownText("Pe\xF1\xF3n"), "Pe\uFFFD\uFFFDn");
    EXPECT_EQ(shownText("\xED\xA0\x80"), "\uFFFD\uFFFD\uFFFD"); // a surrogate
    EXPECT_EQ(shownText("fin\xE2\x82"), "fin\uFFFD\uFFFD");
}

TEST(ShownText, CutsAVeryLongTextBetweenCharactersAndSaysHowLongItWas) {
    EXPECT_EQ(shownText("ñandú", 5), "ñandú");
    EXPECT_EQ(shownText("ñandúes", 5), "ñandú… (7 caracteres)");
    EXPECT_EQ(shownText(std::string(1'000'000, 'x'), 2), "xx… (1.000.000 caracteres)");
}
