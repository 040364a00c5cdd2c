// How many numbers that nobody observed get the right code, on the addresses of a real region: every third
// address is set aside, and looked up in the rows made of the others.
#include "directory/StretchJoining.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <iostream>
#include <map>
#include <set>
#include <string>

#include "loading/csv.h"

namespace ambrel::directory {
namespace {

struct Address {
    std::uint16_t number;
    std::uint32_t postalCode;
};

/// The streets of the region, each with its different numbers.
std::map<std::string, std::vector<Address>> streetsOf(const std::string& folder) {
    loading::CsvReader csv(loading::fileSource(folder + "/callejero/direcciones_rioja_varios_cp.csv"),
                           "direcciones");
    static_cast<void>(csv.next());
    std::map<std::string, std::map<std::uint16_t, std::uint32_t>> streets;
    while (csv.next()) {
        const auto fields = csv.fields();
        const auto numberIn = [](std::string_view text) {
            std::uint32_t value = 0;
            std::from_chars(text.data(), text.data() + text.size(), value);
            return value;
        };
        const std::uint32_t number = numberIn(fields[4].text), code = numberIn(fields[6].text);
        if (number > 0 && number < 9998 && code != 0) {
            const std::string street = std::string(fields[0].text) + '/' + std::string(fields[2].text) + '/' +
                                       std::string(fields[3].text);
            streets[street].emplace(static_cast<std::uint16_t>(number), code);
        }
    }
    std::map<std::string, std::vector<Address>> result;
    for (const auto& [street, numbers] : streets) {
        for (const auto& [number, code] : numbers) {
            result[street].push_back({number, code});
        }
    }
    return result;
}

struct Score {
    int right = 0, wrong = 0, ambiguous = 0, missing = 0;
    [[nodiscard]] double share(int count) const {
        return 100.0 * count / (right + wrong + ambiguous + missing);
    }
};

void look(const std::vector<JoinedStretch>& rows, const Address& address, Score& score) {
    std::set<std::uint32_t> codes;
    const std::size_t at = address.number % 2 == 1 ? 0 : 2;
    for (const JoinedStretch& row : rows) {
        if (row.bounds[at] <= address.number && address.number <= row.bounds[at + 1]) {
            codes.insert(row.postalCode);
        }
    }
    ++(codes.empty()                        ? score.missing
       : codes.size() > 1                   ? score.ambiguous
       : codes.contains(address.postalCode) ? score.right
                                            : score.wrong);
}

Score scoreOf(const std::map<std::string, std::vector<Address>>& streets, RangeOpening opening,
              const char* name) {
    Score score;
    std::vector<JoinedStretch> rows;
    std::size_t counter = 0;
    for (const auto& [street, addresses] : streets) {
        std::vector<ObservedStretch> observed;
        std::vector<Address> setAside;
        for (const Address& one : addresses) {
            if (counter++ % 3 == 0) {
                setAside.push_back(one);
            } else {
                observed.push_back({one.postalCode, one.number % 2 == 1 ? Numbering::Odd : Numbering::Even,
                                    one.number, one.number});
            }
        }
        if (observed.empty()) {
            continue; // a street that the files would not have
        }
        joinStretches(observed, opening, rows);
        for (const Address& one : setAside) {
            look(rows, one, score);
        }
    }
    std::cout << name << ": right " << score.share(score.right) << " %, wrong " << score.share(score.wrong)
              << " %, ambiguous " << score.share(score.ambiguous) << " %, missing "
              << score.share(score.missing) << " %, of "
              << score.right + score.wrong + score.ambiguous + score.missing << '\n';
    return score;
}

TEST(HeldOutNumbers, OpenedEndsFindNearlyAllOfThemAndHardlyEverAWrongCode) {
    const char* const folder = std::getenv("AMBREL_REAL_DATA");
    if (folder == nullptr) {
        GTEST_SKIP() << "wants the folder AMBREL_REAL_DATA";
    }
    const auto streets = streetsOf(folder);
    const Score observed = scoreOf(streets, RangeOpening::None, "as observed");
    const Score ends = scoreOf(streets, RangeOpening::Ends, "ends opened");
    const Score gaps = scoreOf(streets, RangeOpening::Gaps, "gaps closed");
    EXPECT_GT(observed.missing, ends.missing * 10);
    EXPECT_GT(ends.share(ends.right), 99.0);
    EXPECT_LT(ends.share(ends.wrong), 0.5);
    EXPECT_GE(gaps.right, ends.right);
    EXPECT_GE(gaps.wrong, ends.wrong);
}

} // namespace
} // namespace ambrel::directory
