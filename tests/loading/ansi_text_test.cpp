// Text from outside in the tables' code page.
#include "loading/ansi_text.h"

#include <gtest/gtest.h>

namespace loading {
namespace {

TEST(AnsiText, LettersOfTheCodePageGoThereAndBack) {
    EXPECT_EQ(ansiFromUtf8("Alcalá 5º €"), "Alcal\xE1 5\xBA \x80");
    EXPECT_EQ(utf8FromAnsi("Alcal\xE1 5\xBA \x80"), "Alcalá 5º €");
    EXPECT_EQ(ansiFromUtf8(""), "");
}

TEST(AnsiText, WhatTheCodePageLacksIsAQuestionMark) {
    EXPECT_EQ(ansiFromUtf8("Łódź ñ"), "?\xF3"
                                      "d? \xF1");
}

TEST(AnsiText, AccentsOfTheirOwnJoinTheirLetter) {
    EXPECT_EQ(ansiFromUtf8("Alcala\xCC\x81, Espan\xCC\x83"
                           "a, Argu\xCC\x88"
                           "elles, Barc\xCC\xA7"
                           "a"),
              "Alcal\xE1, Espa\xF1"
              "a, Arg\xFC"
              "elles, Bar\xE7"
              "a");
    EXPECT_EQ(ansiFromUtf8("\xCC\x81x\xCC\x81"), "?x?");
}

TEST(AnsiText, OtherBytesAreNotUtf8) {
    EXPECT_EQ(ansiFromUtf8("Alcal\xE1"), std::nullopt);
    EXPECT_EQ(ansiFromUtf8("\xC3"), std::nullopt);
}

} // namespace
} // namespace loading
