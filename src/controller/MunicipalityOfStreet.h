// Which municipality the current street belongs to.
#pragma once

#include <string>

#include "data/CodPostalesDM.h"

namespace ambrel {

/// Name of the current street's municipality, which becomes current where there is one; empty for a street
/// outside the given province. MUNICIPI keeps its tag.
[[nodiscard]] std::string municipalityOfStreet(TDMCodPostales& tables, const std::string& provinceCode);

/// Puts MUNICIPI, ordered by postal code from now on, on the municipality of the street that the user chose,
/// or on the first one of its province where none has its postal code.
void goToMunicipalityOfStreet(TDMCodPostales& tables);

} // namespace ambrel
