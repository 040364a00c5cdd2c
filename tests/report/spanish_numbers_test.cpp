#include "report/SpanishNumbers.h"

#include <limits>

#include <gtest/gtest.h>

using namespace report;

TEST(SpanishNumbers, GroupFiguresByThrees) {
    EXPECT_EQ(grouped(0), "0");
    EXPECT_EQ(grouped(999), "999");
    EXPECT_EQ(grouped(1000), "1.000");
    EXPECT_EQ(grouped(1'234'567), "1.234.567");
    EXPECT_EQ(grouped(std::numeric_limits<std::uint64_t>::max()), "18.446.744.073.709.551.615");
}

TEST(SpanishNumbers, GiveSharesWithACommaAndABlankThatDoesNotBreak) {
    EXPECT_EQ(percentage(123, 1000), "12,3\u00A0%");
    EXPECT_EQ(percentage(1, 2), "50,0\u00A0%");
}

TEST(SpanishNumbers, OnlyNothingIsNoneAndOnlyEverythingIsAll) {
    EXPECT_EQ(percentage(0, 10), "0\u00A0%");
    EXPECT_EQ(percentage(10, 10), "100\u00A0%");
    EXPECT_EQ(percentage(1, 10'000'000), "<\u00A00,1\u00A0%");
    EXPECT_EQ(percentage(9'999'999, 10'000'000), ">\u00A099,9\u00A0%");
    EXPECT_EQ(percentage(0, 0), "–");
}

TEST(SpanishNumbers, GiveTwoDecimals) {
    EXPECT_EQ(twoDecimals(0.87), "0,87");
    EXPECT_EQ(twoDecimals(1), "1,00");
    EXPECT_EQ(twoDecimals(0.999), "1,00");
    EXPECT_EQ(twoDecimals(-0.5), "-0,50");
    EXPECT_EQ(twoDecimals(std::numeric_limits<double>::quiet_NaN()), "0,00");
}

TEST(SpanishNumbers, WriteTheMonthInLetters) {
    std::tm local{};
    local.tm_year = 126;
    local.tm_mon = 10;
    local.tm_mday = 22;
    local.tm_hour = 9;
    local.tm_min = 5;
    local.tm_isdst = -1;
    EXPECT_EQ(dateAndTime(std::mktime(&local)), "22 de noviembre de 2026, 9:05");
}
