// Looking up and completing streets of the current municipality in POSTAL.
#pragma once

#include <optional>
#include <string>

#include "controller/Completion.h"
#include "data/CodPostalesDM.h"

namespace ambrel {

/// Seeks a street of the current municipality; when the row reached has another name, once more without type.
/// In a municipality with a single postal code, a row with another code is not accepted and the first row
/// becomes current. Returns what the first search found. Expects tag VIA.
[[nodiscard]] bool findStreet(TDMCodPostales& tables, const std::string& name, const std::string& type,
                              bool exact);

/// The same, but false without searching while POSTAL has another tag than VIA.
[[nodiscard]] bool findInStreets(TDMCodPostales& tables, const std::string& name, const std::string& type,
                                 bool exact);

/// Completes what is typed from the nearest street; null when that does not begin so. The code is CODIGO1 as
/// a number.
[[nodiscard]] std::optional<NamedCompletion> completeStreet(TDMCodPostales& tables, const EditedText& edited,
                                                            const std::string& type);

/// Where the current street occupies several rows, goes forward to the first one of the given type; stays
/// where it is when there is none.
void chooseStreetType(TDMCodPostales& tables, const std::string& name, const std::string& type);

/// Puts POSTAL on a street of the municipality with the given INE code, else on the same name without type,
/// else on the municipality's first street. Nothing moves in POSTAL when the municipality is not found;
/// MUNICIPI keeps its tag.
void goToStreetOfMunicipality(TDMCodPostales& tables, const std::string& ineCode, const std::string& name,
                              const std::string& type);

} // namespace ambrel
