// Taking written addresses apart.
#pragma once

#include <string_view>
#include <vector>

#include "AmbrelExport.h"
#include "address/AddressParts.h"

namespace ambrel {

/// The readings of an address in one line, the likeliest first: at least one and at most twelve. Several
/// exist where only tables can decide, as in "Calle Mayor 5 Getafe" or "Plaza 2 de Mayo 3". What a reading
/// does not understand is in its `rest`. Line breaks and tabs separate like commas. Text in Windows-1252.
[[nodiscard]] AMBREL_EXPORT std::vector<AddressParts> readAddressLine(std::string_view line);

/// The readings of a street's column that may carry type, number and floor, as in "C/ Mayor 5 bis, 2º izda.";
/// likewise. They name neither postal code nor municipality.
[[nodiscard]] AMBREL_EXPORT std::vector<AddressParts> readStreetText(std::string_view text);

/// A number's column that may carry letter, range and floor: fills `number`, `numberSuffix`, `numberEnd`,
/// `floor` and `rest`.
[[nodiscard]] AMBREL_EXPORT AddressParts readNumberText(std::string_view text);

} // namespace ambrel
