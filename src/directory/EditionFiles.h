// What an edition is read from, and what was noticed in it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace ambrel::directory {

/// Paths of the files; those of pseudo streets, units and municipalities may be empty. One ZIP may hold
/// several.
struct EditionFiles {
    std::string stretches, streets;
    std::string pseudoStreets = {}, units = {}, municipalities = {};
    std::vector<unsigned> provinces = {}; // of the municipalities that count; empty: all
    bool areTakenAsWhole = false;         // however many streets they lack that the earlier edition had
};

/// How far a street is taken to go beyond the numbers that were observed.
enum class RangeOpening : std::uint8_t {
    None,
    Ends, // a street with one code has all numbers; one that is divided goes on at its outer ends
    Gaps  // and each half of a gap between two codes belongs to the code beside it
};

/// What was left out of an edition, or had to be made do with.
struct EditionNotes {
    std::uint64_t ofPseudoStreets = 0;     // stretches, where no file of pseudo streets was given
    std::uint64_t withoutMunicipality = 0; // stretches whose municipality has no name
    std::uint64_t streetsWithoutName = 0;  // that the stretches alone name, in 25 characters
    std::vector<std::string> badLines;     // a text for each file that has some
    std::vector<std::string> otherDates;   // a text for each file of another edition than the stretches'
};

} // namespace ambrel::directory
