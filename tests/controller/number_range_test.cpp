// House numbers in the ranges of a stretch.
#include "controller/NumberRange.h"

#include <gtest/gtest.h>

namespace {

using namespace ambrel;

constexpr StretchRanges stretch{.odd = {11, 21}, .even = {40, 50}};

TEST(NumberRange, BothBoundsAreIncluded) {
    EXPECT_TRUE(stretch.hold(11));
    EXPECT_TRUE(stretch.hold(21));
    EXPECT_FALSE(stretch.hold(9));
    EXPECT_FALSE(stretch.hold(23));
    EXPECT_TRUE(stretch.hold(40));
    EXPECT_TRUE(stretch.hold(50));
    EXPECT_FALSE(stretch.hold(38));
    EXPECT_FALSE(stretch.hold(52));
}

TEST(NumberRange, EachNumberLooksAtItsOwnSideOnly) {
    EXPECT_FALSE(stretch.hold(16)) << "even, between the odd bounds";
    EXPECT_FALSE(stretch.hold(45)) << "odd, between the even bounds";
}

TEST(NumberRange, RangeOfOneNumberMatchesIt) {
    constexpr StretchRanges one{.odd = {7, 7}, .even = {8, 8}};
    EXPECT_TRUE(one.hold(7));
    EXPECT_TRUE(one.hold(8));
    EXPECT_FALSE(one.hold(9));
    EXPECT_FALSE(one.hold(6));
}

TEST(NumberRange, WholeStreetHoldsEveryNumberFromTheFirstToTheOpenEnd) {
    for (const int number : {1, 2, 9998, 9999}) {
        EXPECT_TRUE(wholeStreet.hold(number)) << number;
    }
    EXPECT_FALSE(wholeStreet.hold(0));
    EXPECT_FALSE(wholeStreet.hold(10000));
}

TEST(NumberRange, ZeroIsEven) {
    constexpr StretchRanges odd{.odd = {-1, 1}, .even = {2, 9998}};
    constexpr StretchRanges even{.odd = {1, 9999}, .even = {0, 0}};
    EXPECT_FALSE(odd.hold(0));
    EXPECT_TRUE(even.hold(0));
}

TEST(NumberRange, NegativeOddNumbersAreOdd) {
    constexpr StretchRanges below{.odd = {-3, -1}, .even = {2, 4}};
    EXPECT_TRUE(below.hold(-1));
}

} // namespace
