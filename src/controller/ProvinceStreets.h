// The streets of a province, as the search dialog walks through them.
#pragma once

#include <string>
#include <vector>

#include "data/CodPostalesDM.h"
#include "data/Province.h"

namespace ambrel {

// If PROVIN is open, all of these leave it open, on another record; if it is closed, they leave it closed.

/// The provinces of PROVIN in the order of its tag, without the territories of other groups.
[[nodiscard]] std::vector<Province> spanishProvinces(dbase::Dataset& provinces);

/// Two-digit code of a province by its name in PROVIN, which is ordered by name from now on; "00" for a name
/// that it lacks.
[[nodiscard]] std::string provinceCode(dbase::Dataset& provinces, const std::string& name);

/// Moves MUNICIPI, ordered by postal code from now on, to the first municipality of a province, looked up by
/// its name in PROVIN. A name that PROVIN lacks stands for postal code 00000.
void goToFirstMunicipality(TDMCodPostales& tables, dbase::Dataset& provinces, const std::string& name);

/// Moves POSTAL, whatever its tag, to the first street at or after a name in the current municipality's
/// province.
void goToStreetOfProvince(TDMCodPostales& tables, const std::string& name);

} // namespace ambrel
