// The municipality that the current street belongs to.
#pragma once

#include <string>

#include "data/CodPostalesDM.h"

namespace ambrel {

/// Name of the current street's municipality, which becomes current if there is one; empty for a street
/// outside the given province. MUNICIPI keeps its tag.
[[nodiscard]] std::string municipalityOfStreet(TDMCodPostales& tables, const std::string& provinceCode);

/// Moves MUNICIPI, ordered by postal code from now on, to the municipality of the street that the user chose,
/// or to the first one of its province if none has its postal code.
void goToMunicipalityOfStreet(TDMCodPostales& tables);

} // namespace ambrel
