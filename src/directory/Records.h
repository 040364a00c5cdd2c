// The lines of the official files as values.
#pragma once

#include <cstdint>
#include <string_view>

#include "directory/FixedLine.h"
#include "directory/Layout.h"
#include "directory/PlaceCode.h"

namespace ambrel::directory {

/// Which numbers a stretch has.
enum class Numbering : std::uint8_t { None, Odd, Even };

// Texts are those of the line, in Windows-1252, without blanks on either side; they live as long as it does.

/// A line of TRAM.
struct StretchLine {
    PlaceCode place = 0;
    std::uint32_t unit = 0;   // seven digits: collective and singular entity, check digit, nucleus
    std::uint32_t street = 0; // 0 when it belongs to a pseudo street
    std::uint32_t pseudo = 0; // 0 when it belongs to a street
    std::uint32_t postalCode = 0;
    Numbering numbering = Numbering::None;
    std::uint16_t first = 0, last = 0; // of one parity; 0 without numbers
    char firstLetter = ' ', lastLetter = ' ';
    FixedLine line = FixedLine({});

    // Names are seldom asked for. Short ones:
    [[nodiscard]] std::string_view entity() const { return line.text(111, 135); }
    [[nodiscard]] std::string_view nucleus() const { return line.text(136, 160); }
    [[nodiscard]] std::string_view streetName() const { return line.text(166, 190); }
    // In full:
    [[nodiscard]] std::string_view pseudoName() const { return line.text(196, 245); }
};

/// A line of VIAS.
struct StreetLine {
    PlaceCode place = 0;
    std::uint32_t street = 0;
    std::string_view type; // an abbreviation of up to five letters
    std::string_view name;
};

/// A line of PSEU.
struct PseudoLine {
    PlaceCode place = 0;
    std::uint32_t pseudo = 0;
    std::string_view name;
};

/// A line of UP.
struct UnitLine {
    PlaceCode place = 0;
    std::uint32_t unit = 0;
    std::string_view municipality, entity, nucleus; // in 50 characters, or else in full
};

/// A line of SECC.
struct SectionLine {
    PlaceCode place = 0;
};

/// Why a line is not understood: Spanish UTF-8, or null if it is.
using Refusal = const char*;

// Each takes a line apart, and says why it could not.
[[nodiscard]] Refusal read(const FixedLine& line, StretchLine& stretch);
[[nodiscard]] Refusal read(const FixedLine& line, bool repeatsName, StreetLine& street);
[[nodiscard]] Refusal read(const FixedLine& line, bool repeatsName, PseudoLine& pseudo);
[[nodiscard]] Refusal read(const FixedLine& line, UnitLine& unit);
[[nodiscard]] Refusal read(const FixedLine& line, SectionLine& section);

} // namespace ambrel::directory
