// Writes lines in the layouts of the statistics office's street directory, for tests and benchmarks.
#pragma once

#include <cstdint>
#include <string>

namespace edition {

/// A line of TRAM. Names in Windows-1252; each is cut where the layout cuts it.
struct StretchText {
    std::uint32_t place = 0; // 28079
    std::uint32_t section = 1, unit = 101, street = 0, pseudo = 0, postalCode = 0;
    char numbering = '1'; // 0 none, 1 odd, 2 even
    std::uint32_t first = 0, last = 0;
    char firstLetter = ' ', lastLetter = ' ';
    std::string entity = {}, nucleus = {}, streetName = {}, pseudoName = {};
};

// Each is a line with all its blanks, without its end. `repeatsName`: in the layout since July 2025.
[[nodiscard]] std::string lineOf(const StretchText& stretch);
[[nodiscard]] std::string streetLine(std::uint32_t place, std::uint32_t street, const std::string& type,
                                     const std::string& name, bool repeatsName = true);
[[nodiscard]] std::string pseudoLine(std::uint32_t place, std::uint32_t pseudo, const std::string& name,
                                     bool repeatsName = true);
[[nodiscard]] std::string unitLine(std::uint32_t place, std::uint32_t unit, const std::string& municipality,
                                   const std::string& entity, const std::string& nucleus);

} // namespace edition
