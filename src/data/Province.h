// Provinces, and the codes that begin with one.
#pragma once

#include <string>
#include <string_view>

#include "services/Rnumcad.h"

namespace ambrel {

/// Digits of a province's code, with which postal codes and INE codes begin.
inline constexpr int provinceDigits = 2;
/// Digits of a whole postal code.
inline constexpr int postalCodeDigits = 5;

/// `GRUPO` of the Spanish provinces; countries and other territories have other groups.
inline constexpr int provinceGroup = 1;

/// A row of PROVIN as stored.
struct Province {
    std::string name;
    std::string code; // three characters: "0" and the two digits
};

/// The two digits of the province that a postal code or an INE code begins with.
[[nodiscard]] inline std::string provinceOf(std::string_view code) { return StrLeft(code, provinceDigits); }

} // namespace ambrel
