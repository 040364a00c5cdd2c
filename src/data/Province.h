// Provinces, and the codes that begin with one.
#pragma once

#include <string>
#include <string_view>

#include "services/Rnumcad.h"

namespace ambrel {

/// Digits of a province code; postal codes and INE codes begin with them.
inline constexpr int provinceDigits = 2;
/// Digits of a postal code.
inline constexpr int postalCodeDigits = 5;

/// `GRUPO` of the Spanish provinces; countries and other territories have other groups.
inline constexpr int provinceGroup = 1;

/// A row of PROVIN as stored.
struct Province {
    std::string name;
    std::string code; // three characters: "0" and the two digits
};

/// The two-digit province code at the start of a postal code or an INE code.
[[nodiscard]] inline std::string provinceOf(std::string_view code) { return StrLeft(code, provinceDigits); }

} // namespace ambrel
