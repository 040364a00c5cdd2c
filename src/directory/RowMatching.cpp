// Matches rows by key, then by their numbers.
#include "directory/RowMatching.h"

#include <algorithm>

#include "directory/OwnStreets.h"

namespace ambrel::directory {
namespace {

struct Pair {
    std::uint32_t shared;
    std::size_t row, earlier;
};

/// Rows without numbers count as having one in common.
std::uint32_t likeness(const Bounds& one, const Bounds& other) {
    return numbersIn(one) == 0 && numbersIn(other) == 0 ? 1 : numbersShared(one, other);
}

} // namespace

std::vector<std::optional<std::size_t>> matchRows(std::span<const EarlierStretch> earlier,
                                                  std::span<const JoinedStretch> rows) {
    std::vector<std::optional<std::size_t>> matches(rows.size());
    std::vector<bool> isTaken(earlier.size());
    const auto match = [&](std::size_t row, std::size_t other) {
        if (!matches[row] && !isTaken[other]) {
            matches[row] = other;
            isTaken[other] = true;
        }
    };
    std::vector<Pair> pairs;
    for (std::size_t row = 0; row < rows.size(); ++row) {
        for (std::size_t other = 0; other < earlier.size(); ++other) {
            if (earlier[other].postalCode == rows[row].postalCode &&
                earlier[other].ordinal == rows[row].ordinal) {
                match(row, other);
            }
        }
    }
    for (std::size_t row = 0; row < rows.size(); ++row) {
        for (std::size_t other = 0; other < earlier.size() && !matches[row]; ++other) {
            if (!isTaken[other] && earlier[other].bounds) {
                pairs.push_back({likeness(rows[row].bounds, *earlier[other].bounds), row, other});
            }
        }
    }
    std::ranges::stable_sort(pairs, std::ranges::greater(), &Pair::shared);
    for (const Pair& pair : pairs) {
        if (pair.shared > 0) {
            match(pair.row, pair.earlier);
        }
    }
    for (std::size_t row = 0; row < rows.size(); ++row) {
        for (std::size_t other = 0; other < earlier.size(); ++other) {
            if (!earlier[other].bounds) {
                match(row, other);
            }
        }
    }
    return matches;
}

} // namespace ambrel::directory
