// Which rows of a street in an edition are those of the edition before.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "directory/DirectoryChange.h"
#include "directory/StretchJoining.h"

namespace ambrel::directory {

/// A row of the edition before.
struct EarlierStretch {
    std::uint32_t postalCode = 0;
    std::uint16_t ordinal = 0;
    std::optional<Bounds> bounds = {}; // null where nobody knows them any more
};

/// For each row of a street, the place of its earlier one, each of which is taken once: that of the same
/// postal code and ordinal; else, by turns, the one with most numbers in common; else any of those whose
/// numbers are not known. Null for a new row.
[[nodiscard]] std::vector<std::optional<std::size_t>> matchRows(std::span<const EarlierStretch> earlier,
                                                                std::span<const JoinedStretch> rows);

} // namespace ambrel::directory
