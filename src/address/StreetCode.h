// Determining the postal code of an address from the stretches of its street.
#pragma once

#include <string>
#include <vector>

#include "address/AddressDirectory.h"
#include "address/HouseNumber.h"

namespace ambrel {

/// The stretches that an address with a type may refer to: those of that type; if there are none, those
/// without a type; otherwise, or for a blank type, all.
[[nodiscard]] std::vector<StreetStretch> stretchesOfType(std::vector<StreetStretch> stretches,
                                                         const std::string& type);

/// The stretch in which an address lies, and how certain that is.
struct StreetCode {
    enum class Certainty {
        Sure,      // only one postal code is possible
        NoNumber,  // the street has several codes, and no number selects one
        NoStretch, // no stretch has the number
        Unclear,   // the text for the number is not a number
        Several,   // stretches with different codes have the number
        NoCode     // the stretch has no code
    };
    Certainty certainty = Certainty::NoStretch;
    StreetStretch stretch; // the one with the number; without one, the street's first

    [[nodiscard]] bool isSure() const { return certainty == Certainty::Sure; }
};

/// `stretches`: at least one, all of one street of the municipality. Of several codes for a number, that of
/// the stretches marked as this municipality's counts.
[[nodiscard]] StreetCode streetCode(const std::vector<StreetStretch>& stretches, const std::string& ineCode,
                                    const HouseNumber& number);

} // namespace ambrel
