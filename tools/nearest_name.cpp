// The name nearest to an unknown one.
#include "tools/nearest_name.h"

#include <algorithm>

namespace ambcp {

namespace {

std::string inSmallLetters(std::string_view text) {
    std::string small(text);
    std::ranges::transform(small, small.begin(),
                           [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
    return small;
}

/// Number of wrong, missing and superfluous letters, and of exchanged neighbours.
std::size_t slipsBetween(std::string_view a, std::string_view b) {
    std::vector<std::size_t> before, above(b.size() + 1), row(b.size() + 1);
    for (std::size_t column = 0; column <= b.size(); ++column) {
        row[column] = column;
    }
    for (std::size_t i = 1; i <= a.size(); ++i) {
        before = above;
        above = row;
        row[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t replaced = above[j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1);
            row[j] = std::min({above[j] + 1, row[j - 1] + 1, replaced});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1]) {
                row[j] = std::min(row[j], before[j - 2] + 1);
            }
        }
    }
    return row.back();
}

} // namespace

std::optional<std::string> nearestName(std::string_view typed, const std::vector<std::string>& names) {
    constexpr std::size_t lettersPerSlip = 3;
    const std::string small = inSmallLetters(typed);
    std::optional<std::string> nearest;
    std::size_t fewest = 0;
    for (const std::string& name : names) {
        const bool begins = !small.empty() && name.starts_with(small);
        const std::size_t slips = begins ? 0 : slipsBetween(small, name);
        const bool isNear = slips * lettersPerSlip <= std::max(small.size(), name.size());
        if (isNear && (!nearest || slips < fewest)) {
            nearest = name;
            fewest = slips;
        }
    }
    return nearest;
}

} // namespace ambcp
