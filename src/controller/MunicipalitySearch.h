// Looking up and completing municipalities in MUNICIPI.
#pragma once

#include <optional>
#include <string>

#include "controller/Completion.h"
#include "data/CodPostalesDM.h"

namespace ambrel {

/// Seeks the value in the tag that is active; false without searching for a tag other than NOMBRE, COD_INE
/// and CODPOSTAL.
[[nodiscard]] bool findMunicipality(TDMCodPostales& tables, const std::string& value, bool exact);

/// The current record's column that the active tag orders by; empty for any other tag.
[[nodiscard]] std::string municipalityText(TDMCodPostales& tables);

/// Completes what is typed from the nearest municipality, which becomes current; null when it does not begin
/// so. The code is the INE code.
[[nodiscard]] std::optional<NamedCompletion> completeMunicipality(TDMCodPostales& tables,
                                                                  const EditedText& edited);

/// The current municipality's postal code; null when it has more than one.
[[nodiscard]] std::optional<std::string> onlyPostalCode(const TDMCodPostales& tables);

} // namespace ambrel
