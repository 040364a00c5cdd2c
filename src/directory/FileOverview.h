// What is in an official file.
#pragma once

#include <array>
#include <map>
#include <optional>
#include <string>

#include "directory/FileReading.h"

namespace ambrel::directory {

/// Counts of an official file; those of stretches are 0 in other kinds.
struct FileOverview {
    std::optional<Layout> layout; // null if the file has none that is known; the rest is then empty
    std::string latestChange;     // date of the newest change, AAAA-MM-DD; empty if no line has one
    ReadCounts counts;
    std::map<unsigned, std::uint64_t> provinces; // lines understood of each
    std::array<std::uint64_t, 3> byNumbering{};  // stretches, in the order of Numbering
    std::uint64_t ofPseudoStreets = 0;
    std::uint64_t withForeignCode = 0; // whose postal code is another province's
};

/// Reads a file to its end. Errors: loading::Failure if it cannot be read.
[[nodiscard]] FileOverview overviewOf(const OfficialFile& file, const ReadingProgress& progress = {});

} // namespace ambrel::directory
