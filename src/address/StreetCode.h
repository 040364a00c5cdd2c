// Which postal code an address has, of the stretches that its street is divided into.
#pragma once

#include <string>
#include <vector>

#include "address/AddressDirectory.h"
#include "address/HouseNumber.h"

namespace ambrel {

/// The stretches that an address with a type can mean: those of that type; where there are none, those
/// without type; else, and for a blank type, all.
[[nodiscard]] std::vector<StreetStretch> stretchesOfType(std::vector<StreetStretch> stretches,
                                                         const std::string& type);

/// The stretch that an address lies in, and how far that is sure.
struct StreetCode {
    enum class Certainty {
        Sure,      // one postal code is possible
        NoNumber,  // the street has several codes, and no number chooses among them
        NoStretch, // no stretch has the number
        Unclear,   // what stands for a number is none
        Several,   // stretches with different codes have the number
        NoCode     // the stretch has none
    };
    Certainty certainty = Certainty::NoStretch;
    StreetStretch stretch; // the one with the number; without one the street's first

    [[nodiscard]] bool isSure() const { return certainty == Certainty::Sure; }
};

/// `stretches`: at least one, all of one street of the municipality. Where the postal codes of two
/// municipalities overlap, the INE code chooses: stretches that are said to be another's count only while
/// none is said to be this one's.
[[nodiscard]] StreetCode streetCode(const std::vector<StreetStretch>& stretches, const std::string& ineCode,
                                    const HouseNumber& number);

} // namespace ambrel
