// Columns of a line as numbers.
#include "directory/FixedLine.h"

#include <gtest/gtest.h>

#include <string>

namespace ambrel::directory {
namespace {

constexpr std::size_t mostDigits = 9;

/// As many digits from the first column on that the line is that long, whose columns differ.
std::string digitsOf(std::size_t length) {
    std::string line;
    for (std::size_t i = 0; i < length; ++i) {
        line += static_cast<char>('0' + (i * 7 + 3) % 10);
    }
    return line;
}

TEST(FixedLine, ReadsNumbersOfAnyWidthWhereverTheyStand) {
    for (std::size_t length = 1; length <= 20; ++length) {
        const std::string line = digitsOf(length);
        for (std::size_t first = 1; first <= length; ++first) {
            for (std::size_t last = first; last <= length && last < first + mostDigits; ++last) {
                const std::string digits = line.substr(first - 1, last - first + 1);
                EXPECT_EQ(FixedLine(line).number(first, last), std::stoul(digits)) << line << ' ' << first;
            }
        }
    }
}

TEST(FixedLine, ReadsTheLargestNumber) {
    EXPECT_EQ(FixedLine("999999999").number(1, 9), 999'999'999U);
    EXPECT_EQ(FixedLine("99999999").number(1, 8), 99'999'999U);
    EXPECT_EQ(FixedLine("000000000").number(1, 9), 0U);
}

TEST(FixedLine, ANumberHasNoSignButDigitsWhateverStandsBesideIt) {
    for (std::size_t width = 1; width <= mostDigits; ++width) {
        for (int code = 0; code < 256; ++code) {
            const char sign = static_cast<char>(code);
            const bool isDigit = sign >= '0' && sign <= '9';
            for (std::size_t at = 0; at < width; ++at) {
                std::string line = digitsOf(width);
                line[at] = sign;
                for (const std::size_t before : {0U, 1U, 12U}) {
                    const std::string whole = std::string(before, sign) + line + std::string(before, sign);
                    const FixedLine fixed(whole);
                    EXPECT_EQ(fixed.number(before + 1, before + width).has_value(), isDigit)
                        << width << ' ' << at << ' ' << code;
                    if (isDigit) {
                        EXPECT_EQ(fixed.number(before + 1, before + width), std::stoul(line));
                    }
                }
            }
        }
    }
}

TEST(FixedLine, HasNoNumberBeyondItsEnd) {
    const FixedLine line("0123456");
    EXPECT_EQ(line.number(5, 7), 456U);
    EXPECT_EQ(line.number(5, 8), std::nullopt);
    EXPECT_EQ(line.number(8, 8), std::nullopt);
    EXPECT_EQ(FixedLine("").number(1, 1), std::nullopt);
}

} // namespace
} // namespace ambrel::directory
