// Which rows of a street continue those of the edition before.
#include "directory/RowMatching.h"

#include <gtest/gtest.h>

namespace ambrel::directory {
namespace {

using Matches = std::vector<std::optional<std::size_t>>;

JoinedStretch row(std::uint32_t code, std::uint16_t first, std::uint16_t last, std::uint16_t ordinal = 0) {
    return {.postalCode = code, .bounds = {first, last, 0, 0}, .ordinal = ordinal};
}

EarlierStretch earlier(std::uint32_t code, std::uint16_t first, std::uint16_t last,
                       std::uint16_t ordinal = 0) {
    return {code, ordinal, Bounds{first, last, 0, 0}};
}

TEST(RowMatching, TheSameCodeAndOrdinalIsTheSameRowWhateverItsNumbers) {
    const std::vector<EarlierStretch> before = {earlier(28001, 1, 9), earlier(28002, 11, 19)};
    const std::vector<JoinedStretch> rows = {row(28001, 11, 19), row(28002, 1, 9)};
    EXPECT_EQ(matchRows(before, rows), (Matches{0, 1}));
}

TEST(RowMatching, AfterAChangeOfCodeTheRowWithMostNumbersInCommonIsTheSame) {
    const std::vector<EarlierStretch> before = {earlier(28001, 1, 9), earlier(28002, 11, 99),
                                                earlier(28003, 101, 109)};
    const std::vector<JoinedStretch> rows = {row(28003, 101, 109), row(28005, 7, 59), row(28006, 1, 5)};
    EXPECT_EQ(matchRows(before, rows), (Matches{2, 1, 0}));
}

TEST(RowMatching, WithoutNumbersInCommonARowIsNew) {
    const std::vector<EarlierStretch> before = {earlier(28001, 1, 9)};
    const std::vector<JoinedStretch> rows = {row(28002, 11, 19)};
    EXPECT_EQ(matchRows(before, rows), (Matches{std::nullopt}));
}

TEST(RowMatching, ARowWhoseNumbersAreForgottenMayBeAnyOfTheRest) {
    const std::vector<EarlierStretch> before = {{28001, 0, std::nullopt}, earlier(28002, 1, 9)};
    const std::vector<JoinedStretch> rows = {row(28004, 1, 9), row(28005, 11, 19), row(28006, 21, 29)};
    EXPECT_EQ(matchRows(before, rows), (Matches{1, 0, std::nullopt}));
}

TEST(RowMatching, RowsWithoutNumbersAreAlike) {
    const std::vector<EarlierStretch> before = {earlier(28001, 0, 0)};
    const std::vector<JoinedStretch> rows = {row(28002, 0, 0)};
    EXPECT_EQ(matchRows(before, rows), (Matches{0}));
}

} // namespace
} // namespace ambrel::directory
