// The streets of a province, as the search dialog goes through them.
#pragma once

#include <string>
#include <vector>

#include "data/CodPostalesDM.h"
#include "data/Province.h"

namespace ambrel {

/// The provinces of a closed PROVIN, in the order of its tag, without the territories of other groups. Closes
/// it again.
[[nodiscard]] std::vector<Province> spanishProvinces(dbase::Dataset& provinces);

/// Two-digit code of a province by its name in a closed PROVIN, ordered by name from now on; "00" for a name
/// that it lacks.
[[nodiscard]] std::string provinceCode(dbase::Dataset& provinces, const std::string& name);

/// Puts MUNICIPI, ordered by postal code from now on, on the first municipality of a province, which is
/// looked up by its name in a closed PROVIN. A name that PROVIN lacks stands for postal code 00000.
void goToProvince(TDMCodPostales& tables, dbase::Dataset& provinces, const std::string& name);

/// Puts POSTAL, whatever its tag, on the first street at or after a name in the province of the current
/// municipality.
void goToStreetOfProvince(TDMCodPostales& tables, const std::string& name);

} // namespace ambrel
