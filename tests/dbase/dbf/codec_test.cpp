// The bytes of columns, decoded and encoded.
#include "dbase/dbf/codec.h"

#include <gtest/gtest.h>

#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <random>
#include <span>
#include <string>

namespace {

using namespace dbase;

/// The bytes that an encoder writes into a field of this width; one that refuses must not have written.
template<typename Encode>
std::optional<std::string> encoded(std::size_t width, Encode encode) {
    std::string raw(width, '#');
    if (!encode(raw)) {
        EXPECT_EQ(raw, std::string(width, '#')) << "refused but written";
        return std::nullopt;
    }
    return raw;
}

std::optional<std::string> encodedNumber(double value, std::size_t width, int decimals = 0) {
    return encoded(width, [&](std::span<char> raw) { return encodeNumber(raw, value, decimals); });
}

std::optional<std::string> encodedInteger(std::int64_t value, std::size_t width, int decimals = 0) {
    return encoded(width, [&](std::span<char> raw) { return encodeInteger(raw, value, decimals); });
}

TEST(Codec, TextDropsTrailingBlanksOnly) {
    EXPECT_EQ(decodeText("  A B   "), "  A B");
    EXPECT_EQ(decodeText("     "), "");
    EXPECT_EQ(decodeText(""), "");
    EXPECT_EQ(decodeText("A\t"), "A\t");
}

TEST(Codec, TextEndsAtItsFirstZero) {
    EXPECT_EQ(decodeText(std::string_view("AB \0CD", 6)), "AB");
    EXPECT_EQ(decodeText(std::string_view("\0\0", 2)), "");
}

TEST(Codec, EncodedTextIsPaddedOrCut) {
    std::string raw = "#####";
    encodeText(raw, "AB");
    EXPECT_EQ(raw, "AB   ");
    encodeText(raw, "ABCDEFG");
    EXPECT_EQ(raw, "ABCDE");
}

TEST(Codec, IntegerAcceptsEveryLegalForm) {
    EXPECT_EQ(decodeInteger("    12"), 12);
    EXPECT_EQ(decodeInteger("12    "), 12);
    EXPECT_EQ(decodeInteger("  -12 "), -12);
    EXPECT_EQ(decodeInteger("+7"), 7);
    EXPECT_EQ(decodeInteger("000012"), 12);
    EXPECT_EQ(decodeInteger("5."), 5);
    EXPECT_EQ(decodeInteger("5.00"), 5);
    EXPECT_EQ(decodeInteger(".0"), 0);
    EXPECT_EQ(decodeInteger("-0"), 0);
}

TEST(Codec, IntegerIsNullForWhatIsNone) {
    for (const char* text :
         {"", "     ", "*****", "-", "+", ".", "1.5", "1 2", "--1", "1-", "A", "1E3", "0x1"}) {
        EXPECT_EQ(decodeInteger(text), std::nullopt) << text;
    }
    EXPECT_EQ(decodeInteger(std::string_view("1\0", 2)), std::nullopt);
}

TEST(Codec, IntegerIsNullBeyond64Bits) {
    EXPECT_EQ(decodeInteger("9223372036854775807"), std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(decodeInteger("9223372036854775808"), std::nullopt);
    EXPECT_EQ(decodeInteger("-9223372036854775808"), std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(decodeInteger("-9223372036854775809"), std::nullopt);
    EXPECT_EQ(decodeInteger("99999999999999999999"), std::nullopt);
    EXPECT_EQ(decodeInteger("00000000000000000000000000001"), 1);
}

TEST(Codec, NumberAcceptsEveryLegalForm) {
    EXPECT_EQ(decodeNumber("  12.50"), 12.5);
    EXPECT_EQ(decodeNumber("-.5 "), -0.5);
    EXPECT_EQ(decodeNumber("5."), 5.0);
    EXPECT_EQ(decodeNumber("+003"), 3.0);
    EXPECT_EQ(decodeNumber("0.1"), 0.1);
    EXPECT_EQ(decodeNumber("1234567890123456.789"), 1234567890123456.789);
    EXPECT_EQ(decodeNumber("99999999999999999999"), 1e20);
}

TEST(Codec, NumberIsNullForWhatIsNone) {
    for (const char* text :
         {"", "    ", "****", ".", "-", "1..2", "1.2.3", "1E5", "inf", "nan", "1,5", "1 2", "-+1"}) {
        EXPECT_EQ(decodeNumber(text), std::nullopt) << text;
    }
}

TEST(Codec, NumberReadsEveryDecimalTextCorrectlyRounded) {
    std::mt19937_64 random(7);
    for (int round = 0; round < 20000; ++round) {
        std::string text = std::to_string(random() % 1000000000000ull);
        text.insert(text.size() - random() % text.size(), ".");
        double expected = 0;
        std::from_chars(text.data(), text.data() + text.size(), expected);
        EXPECT_EQ(decodeNumber(text), expected) << text;
    }
}

TEST(Codec, NumberTooLargeForAnyDoubleIsNull) {
    EXPECT_FALSE(decodeNumber("1" + std::string(400, '0')));
    EXPECT_EQ(decodeNumber("-" + std::string(30, '0')), 0);
    EXPECT_FALSE(std::signbit(decodeNumber("-0.0").value()));
}

TEST(Codec, NoRoomIsFilledWithNothing) {
    encodeBlank({});
    encodeText({}, "A");
    encodeLogical({}, true);
    EXPECT_FALSE(encodeNumber({}, 1, 0));
    EXPECT_EQ(encodedNumber(1, 5, -1), std::nullopt) << "there are no fewer than no decimals";
}

TEST(Codec, LogicalReadsBothLanguagesAndCases) {
    for (const char* text : {"T", "t", "Y", "y"}) {
        EXPECT_EQ(decodeLogical(text), true);
    }
    for (const char* text : {"F", "f", "N", "n"}) {
        EXPECT_EQ(decodeLogical(text), false);
    }
    for (const char* text : {"?", " ", "1", "V", "S", ""}) {
        EXPECT_EQ(decodeLogical(text), std::nullopt) << text;
    }
}

TEST(Codec, LogicalIsWrittenAsTOrF) {
    std::string raw = "?";
    encodeLogical(raw, true);
    EXPECT_EQ(raw, "T");
    encodeLogical(raw, false);
    EXPECT_EQ(raw, "F");
}

TEST(Codec, DateIsAJulianDayNumber) {
    EXPECT_EQ(decodeDate("19700101"), 2440588);
    EXPECT_EQ(decodeDate("20240101"), 2460311);
    EXPECT_EQ(decodeDate("19000101"), 2415021);
}

TEST(Codec, YearsBeyondFourDigitsAreNoDates) {
    EXPECT_FALSE(julianDay(10000, 1, 1));
    EXPECT_FALSE(julianDay(0, 1, 1));
    EXPECT_TRUE(julianDay(9999, 12, 31));
}

TEST(Codec, DateThatDoesNotExistIsNull) {
    for (const char* text : {"        ", "00000000", "20230229", "19000229", "20241301", "20240001",
                             "20240100", "20240431", "2024010", "2024 101", "********", "00000101", ""}) {
        EXPECT_EQ(decodeDate(text), std::nullopt) << text;
    }
    EXPECT_TRUE(decodeDate("20000229"));
    EXPECT_TRUE(decodeDate("20240229"));
}

TEST(Codec, EveryDaySurvivesARoundTripAndTheyAreConsecutive) {
    const JulianDay first = decodeDate("00010101").value();
    const JulianDay last = decodeDate("99991231").value();
    EXPECT_EQ(last - first + 1, 3652059);
    std::string previous = "00000000";
    for (JulianDay day = first; day <= last; ++day) {
        const std::string text = encodeDate(day);
        ASSERT_LT(previous, text);
        ASSERT_EQ(decodeDate(text), day) << text;
        previous = text;
    }
}

TEST(Codec, DayOutsideFourDigitYearsIsWrittenBlank) {
    EXPECT_EQ(encodeDate(decodeDate("00010101").value() - 1), "        ");
    EXPECT_EQ(encodeDate(decodeDate("99991231").value() + 1), "        ");
    EXPECT_EQ(encodeDate(std::numeric_limits<JulianDay>::min()), "        ");
    EXPECT_EQ(encodeDate(std::numeric_limits<JulianDay>::max()), "        ");
}

TEST(Codec, NumberIsWrittenWithExactlyItsDecimals) {
    EXPECT_EQ(encodedNumber(12.5, 8, 2), "   12.50");
    EXPECT_EQ(encodedNumber(-0.5, 5, 2), "-0.50");
    EXPECT_EQ(encodedNumber(0, 4, 2), "0.00");
    EXPECT_EQ(encodedNumber(3, 3), "  3");
    EXPECT_EQ(encodedNumber(1e19, 20), "10000000000000000000");
}

TEST(Codec, NumberRoundsHalvesOfItsDecimalFormAwayFromZero) {
    EXPECT_EQ(encodedNumber(2.675, 6, 2), "  2.68"); // although the nearest double is below the half
    EXPECT_EQ(encodedNumber(-2.675, 6, 2), " -2.68");
    EXPECT_EQ(encodedNumber(0.5, 2), " 1");
    EXPECT_EQ(encodedNumber(2.5, 2), " 3");
    EXPECT_EQ(encodedNumber(0.49, 2), " 0");
    EXPECT_EQ(encodedNumber(99.995, 6, 2), "100.00");
    EXPECT_EQ(encodedNumber(0.0004, 6, 2), "  0.00");
    EXPECT_EQ(encodedNumber(0.05, 4, 1), " 0.1");
}

TEST(Codec, ZeroIsWrittenWithoutSign) {
    EXPECT_EQ(encodedNumber(-0.0, 4), "   0");
    EXPECT_EQ(encodedNumber(-0.001, 5, 2), " 0.00");
}

TEST(Codec, NumberThatDoesNotFitIsRefused) {
    EXPECT_EQ(encodedNumber(100, 2), std::nullopt);
    EXPECT_EQ(encodedNumber(99.5, 2), std::nullopt); // rounds to 100
    EXPECT_EQ(encodedNumber(-10, 2), std::nullopt);
    EXPECT_EQ(encodedNumber(1.5, 3, 2), std::nullopt);
    EXPECT_EQ(encodedNumber(1e300, 20), std::nullopt);
    EXPECT_EQ(encodedNumber(std::numeric_limits<double>::infinity(), 20), std::nullopt);
    EXPECT_EQ(encodedNumber(std::numeric_limits<double>::quiet_NaN(), 20), std::nullopt);
    EXPECT_EQ(encodedNumber(0, 0), std::nullopt);
}

TEST(Codec, IntegerIsWrittenRightJustified) {
    EXPECT_EQ(encodedInteger(42, 6), "    42");
    EXPECT_EQ(encodedInteger(-32768, 6), "-32768");
    EXPECT_EQ(encodedInteger(7, 6, 2), "  7.00");
    EXPECT_EQ(encodedInteger(std::numeric_limits<std::int64_t>::min(), 20), "-9223372036854775808");
}

TEST(Codec, IntegerThatDoesNotFitIsRefusedNotCut) {
    EXPECT_EQ(encodedInteger(-32768, 4), std::nullopt);
    EXPECT_EQ(encodedInteger(10000, 4), std::nullopt);
    EXPECT_EQ(encodedInteger(10, 4, 2), std::nullopt);
    EXPECT_EQ(encodedInteger(0, 0), std::nullopt);
}

TEST(Codec, WrittenNumbersReadBack) {
    std::mt19937_64 random(11);
    for (int round = 0; round < 20000; ++round) {
        const auto value = static_cast<std::int64_t>(random() % 2000000) - 1000000;
        EXPECT_EQ(decodeInteger(encodedInteger(value, 10).value()), value);
        EXPECT_EQ(decodeInteger(encodedInteger(value, 11, 2).value()), value);
        const double decimal = static_cast<double>(value) / 100;
        EXPECT_EQ(decodeNumber(encodedNumber(decimal, 12, 2).value()), decimal);
    }
}

TEST(Codec, BlankIsBlanks) {
    std::string raw = "12345678";
    encodeBlank(raw);
    EXPECT_EQ(raw, "        ");
    EXPECT_EQ(decodeNumber(raw), std::nullopt);
    EXPECT_EQ(decodeDate(raw), std::nullopt);
    EXPECT_EQ(decodeLogical(raw), std::nullopt);
}

} // namespace
