// The streets of a province, as the search dialog goes through them.
#pragma once

#include <string>
#include <vector>

#include "data/CodPostalesDM.h"
#include "data/Province.h"

namespace ambrel {

// All of them leave PROVIN open when they find it open, on another record, and closed when they find it
// closed.

/// The provinces of PROVIN in the order of its tag, without the territories of other groups.
[[nodiscard]] std::vector<Province> spanishProvinces(dbase::Dataset& provinces);

/// Two-digit code of a province by its name in PROVIN, ordered by name from now on; "00" for a name that it
/// lacks.
[[nodiscard]] std::string provinceCode(dbase::Dataset& provinces, const std::string& name);

/// Puts MUNICIPI, ordered by postal code from now on, on the first municipality of a province, which is
/// looked up by its name in PROVIN. A name that PROVIN lacks stands for postal code 00000.
void goToProvince(TDMCodPostales& tables, dbase::Dataset& provinces, const std::string& name);

/// Puts POSTAL, whatever its tag, on the first street at or after a name in the province of the current
/// municipality.
void goToStreetOfProvince(TDMCodPostales& tables, const std::string& name);

} // namespace ambrel
