// UTF-8.
#include "loading/utf8.h"

#include <gtest/gtest.h>

namespace loading {
namespace {

TEST(Utf8, KnowsItsOwn) {
    for (const std::string_view text : {"", "a", "ñ", "€", "\U0001F600", "\uD7FF\uE000\U0010FFFF"}) {
        EXPECT_TRUE(isUtf8(text)) << text;
    }
}

TEST(Utf8, RefusesWhatOnlyLooksLikeIt) {
    for (const std::string_view text :
         {"\x80", "\xC0\x80", "\xC1\xBF", "\xC3", "a\xC3(", "\xE0\x9F\xBF", "\xE2\x82", "\xED\xA0\x80",
          "\xF0\x8F\xBF\xBF", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xFF"}) {
        EXPECT_FALSE(isUtf8(text));
    }
}

TEST(Utf8, WritesCodePointsOfEverySize) {
    std::string text;
    for (const char32_t code : {U'\x7F', U'\x80', U'\x7FF', U'\x800', U'\xFFFF', U'\x10000', U'\x10FFFF'}) {
        appendUtf8(text, code);
    }
    EXPECT_EQ(text, "\x7F\u0080\u07FF\u0800\uFFFF\U00010000\U0010FFFF");
}

} // namespace
} // namespace loading
