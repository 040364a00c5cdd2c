// Looking up and completing municipalities in MUNICIPI.
#pragma once

#include <optional>
#include <string>

#include "controller/Completion.h"
#include "data/CodPostalesDM.h"

namespace ambrel {

/// Seeks the value in the active tag; for a tag other than NOMBRE, COD_INE and CODPOSTAL, returns false
/// without searching.
[[nodiscard]] bool findMunicipality(TDMCodPostales& tables, const std::string& value, bool exact);

/// The current record's value in the column that the active tag orders by; empty for any other tag.
[[nodiscard]] std::string municipalityText(TDMCodPostales& tables);

/// Completes the typed text from the nearest municipality, which becomes current; null if its text begins
/// differently. The code is the INE code.
[[nodiscard]] std::optional<NamedCompletion> completeMunicipality(TDMCodPostales& tables,
                                                                  const EditedText& edited);

/// The current municipality's postal code; null if it has more than one.
[[nodiscard]] std::optional<std::string> onlyPostalCode(const TDMCodPostales& tables);

} // namespace ambrel
