// The stretches of one street as rows of POSTAL.
#include "directory/StretchJoining.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>
#include <random>

#include "support/Seed.h"

namespace ambrel::directory {

void PrintTo(const JoinedStretch& row, std::ostream* out) {
    *out << row.postalCode << ' ' << row.bounds[0] << '-' << row.bounds[1] << ' ' << row.bounds[2] << '-'
         << row.bounds[3] << " #" << row.ordinal;
}

namespace {

constexpr std::uint32_t a = 28001, b = 28002;
using Bounds = std::array<std::uint16_t, 4>;

ObservedStretch numbers(std::uint32_t code, int first, int last) {
    static std::uint32_t line = 0;
    return {code, first % 2 == 1 ? Numbering::Odd : Numbering::Even, static_cast<std::uint16_t>(first),
            static_cast<std::uint16_t>(last), ++line};
}
ObservedStretch withoutNumbers(std::uint32_t code) { return {.postalCode = code}; }

std::vector<JoinedStretch> joined(std::vector<ObservedStretch> stretches,
                                  RangeOpening opening = RangeOpening::None) {
    std::vector<JoinedStretch> rows;
    joinStretches(stretches, opening, rows);
    return rows;
}

/// Code and bounds of each row.
std::vector<std::pair<std::uint32_t, Bounds>> boundsOf(const std::vector<JoinedStretch>& rows) {
    std::vector<std::pair<std::uint32_t, Bounds>> bounds;
    for (const JoinedStretch& row : rows) {
        bounds.emplace_back(row.postalCode, row.bounds);
    }
    return bounds;
}
using Expected = std::vector<std::pair<std::uint32_t, Bounds>>;

TEST(StretchJoining, OddAndEvenStretchesOfOneCodeAreOneRow) {
    EXPECT_EQ(boundsOf(joined({numbers(a, 2, 20), numbers(a, 1, 21)})), (Expected{{a, {1, 21, 2, 20}}}));
}

TEST(StretchJoining, StretchesOfOneCodeInSeveralSectionsAreOneRange) {
    EXPECT_EQ(boundsOf(joined({numbers(a, 31, 41), numbers(a, 1, 9), numbers(a, 11, 21)})),
              (Expected{{a, {1, 41, 0, 0}}}));
}

TEST(StretchJoining, AnotherCodeInBetweenDividesThem) {
    EXPECT_EQ(boundsOf(joined({numbers(a, 1, 9), numbers(b, 11, 19), numbers(a, 21, 29), numbers(a, 2, 40)})),
              (Expected{{a, {1, 9, 2, 40}}, {a, {21, 29, 0, 0}}, {b, {11, 19, 0, 0}}}));
}

TEST(StretchJoining, SidesAreDividedEachAtItsPlace) {
    EXPECT_EQ(boundsOf(joined({numbers(a, 1, 9), numbers(b, 11, 19), numbers(a, 2, 16), numbers(b, 18, 30)})),
              (Expected{{a, {1, 9, 2, 16}}, {b, {11, 19, 18, 30}}}));
}

TEST(StretchJoining, OneNumberWithTwoCodesStaysInBoth) {
    EXPECT_EQ(boundsOf(joined({numbers(a, 1, 7), numbers(b, 7, 7)})),
              (Expected{{a, {1, 7, 0, 0}}, {b, {7, 7, 0, 0}}}));
}

TEST(StretchJoining, ANestedStretchDoesNotShortenTheOneAround) {
    EXPECT_EQ(boundsOf(joined({numbers(a, 1, 99), numbers(a, 5, 7)})), (Expected{{a, {1, 99, 0, 0}}}));
}

TEST(StretchJoining, AStreetWithoutNumbersIsOpen) {
    EXPECT_EQ(boundsOf(joined({withoutNumbers(a)})), (Expected{{a, {1, 9999, 2, 9998}}}));
    EXPECT_EQ(boundsOf(joined({withoutNumbers(a), withoutNumbers(b), withoutNumbers(a)})),
              (Expected{{a, {1, 9999, 2, 9998}}, {b, {1, 9999, 2, 9998}}}))
        << "no number can tell them apart";
}

TEST(StretchJoining, AStretchWithoutNumbersTakesNoNumberFromTheOthers) {
    EXPECT_EQ(boundsOf(joined({numbers(a, 1, 9), withoutNumbers(a)})), (Expected{{a, {1, 9, 0, 0}}}));
    EXPECT_EQ(boundsOf(joined({numbers(a, 1, 9), withoutNumbers(b)})),
              (Expected{{a, {1, 9, 0, 0}}, {b, {0, 0, 0, 0}}}));
}

TEST(StretchJoining, WholeSidesOfEarlierEditionsStayAsTheyAre) {
    for (const RangeOpening opening : {RangeOpening::None, RangeOpening::Ends, RangeOpening::Gaps}) {
        const auto rows = joined({numbers(a, 1, 9999), numbers(a, 2, 9998)}, opening);
        EXPECT_EQ(boundsOf(rows), (Expected{{a, {1, 9999, 2, 9998}}}));
        EXPECT_EQ(rows[0].opened, (std::array<RangeOpening, 4>{})) << "nothing was opened";
    }
}

TEST(StretchOpening, AStreetWithOneCodeHasAllNumbersOfBothSides) {
    const auto rows = joined({numbers(a, 3, 9)}, RangeOpening::Ends);
    EXPECT_EQ(boundsOf(rows), (Expected{{a, {1, 9999, 2, 9998}}}));
    EXPECT_EQ(rows[0].opened,
              (std::array{RangeOpening::Ends, RangeOpening::Ends, RangeOpening::Ends, RangeOpening::Ends}));
}

TEST(StretchOpening, ADividedStreetGoesOnAtItsOuterEnds) {
    const auto rows = joined({numbers(a, 3, 9), numbers(b, 21, 29), numbers(a, 4, 6)}, RangeOpening::Ends);
    EXPECT_EQ(boundsOf(rows), (Expected{{a, {1, 9, 2, 9998}}, {b, {21, 9999, 0, 0}}}));
    EXPECT_EQ(rows[0].opened,
              (std::array{RangeOpening::Ends, RangeOpening::None, RangeOpening::Ends, RangeOpening::Ends}));
    EXPECT_EQ(rows[1].opened,
              (std::array{RangeOpening::None, RangeOpening::Ends, RangeOpening::None, RangeOpening::None}));
}

TEST(StretchOpening, TheRangeThatReachesFurthestIsTheOuterOne) {
    EXPECT_EQ(boundsOf(joined({numbers(a, 1, 99), numbers(b, 5, 7)}, RangeOpening::Ends)),
              (Expected{{a, {1, 9999, 0, 0}}, {b, {5, 7, 0, 0}}}));
}

TEST(StretchOpening, GapsBetweenCodesAreHalvedOnlyWhenAskedFor) {
    const std::vector<ObservedStretch> street = {numbers(a, 1, 9), numbers(b, 21, 29)};
    EXPECT_EQ(boundsOf(joined(street, RangeOpening::Ends)),
              (Expected{{a, {1, 9, 0, 0}}, {b, {21, 9999, 0, 0}}}));
    const auto rows = joined(street, RangeOpening::Gaps); // 11, 13, 15 and 17, 19
    EXPECT_EQ(boundsOf(rows), (Expected{{a, {1, 15, 0, 0}}, {b, {17, 9999, 0, 0}}}));
    EXPECT_EQ(rows[0].opened[1], RangeOpening::Gaps);
    EXPECT_EQ(rows[1].opened[0], RangeOpening::Gaps);
}

TEST(StretchOpening, AGapOfOneNumberGoesToTheStretchBeforeIt) {
    const auto rows = joined({numbers(a, 1, 9), numbers(b, 13, 29)}, RangeOpening::Gaps);
    EXPECT_EQ(boundsOf(rows), (Expected{{a, {1, 11, 0, 0}}, {b, {13, 9999, 0, 0}}}));
    EXPECT_EQ(rows[1].opened[0], RangeOpening::None);
}

TEST(StretchJoining, RowsOfACodeAreCountedInTheirOrder) {
    const auto rows = joined({numbers(a, 1, 9), numbers(b, 11, 19), numbers(a, 21, 29)});
    EXPECT_EQ(rows[0].ordinal, 0);
    EXPECT_EQ(rows[1].ordinal, 1);
    EXPECT_EQ(rows[2].ordinal, 0);
}

/// The codes that rows give to a number.
std::vector<std::uint32_t> codesOf(const std::vector<JoinedStretch>& rows, unsigned number) {
    std::vector<std::uint32_t> codes;
    const std::size_t at = number % 2 == 1 ? 0 : 2;
    for (const JoinedStretch& row : rows) {
        if (row.bounds[at] <= number && number <= row.bounds[at + 1]) {
            codes.push_back(row.postalCode);
        }
    }
    std::ranges::sort(codes);
    codes.erase(std::ranges::unique(codes).begin(), codes.end());
    return codes;
}

// Whatever the stretches are: an observed number keeps its codes, unless it lies inside the run of another
// code, where it has both; opening adds numbers and takes none; and no number becomes one with two codes by
// it.
TEST(StretchJoining, NoObservedNumberLosesItsCodeAndNoOpeningMakesOneAmbiguous) {
    std::mt19937 engine(test::seedOfThisRun());
    const auto random = [&] { return static_cast<unsigned>(engine()); };
    for (int round = 0; round < 3000; ++round) {
        std::vector<ObservedStretch> street;
        const unsigned count = 1 + random() % 6;
        for (unsigned i = 0; i < count; ++i) {
            const int first = static_cast<int>(1 + random() % 40);
            street.push_back(
                numbers(28001 + random() % 3, first, first + 2 * static_cast<int>(random() % 8)));
        }
        const auto plain = joined(street), ends = joined(street, RangeOpening::Ends),
                   gaps = joined(street, RangeOpening::Gaps);
        for (unsigned number = 1; number <= 70; ++number) {
            const auto observed = codesOf(plain, number);
            for (const ObservedStretch& one : street) {
                if (one.first <= number && number <= one.last && one.first % 2 == number % 2) {
                    ASSERT_TRUE(std::ranges::binary_search(observed, one.postalCode)) << number;
                }
            }
            for (const auto& opened : {codesOf(ends, number), codesOf(gaps, number)}) {
                ASSERT_TRUE(observed.empty() ? opened.size() <= 1 : opened == observed) << number;
            }
        }
    }
}

} // namespace
} // namespace ambrel::directory
