// Looking up and completing streets of the current municipality in POSTAL.
#pragma once

#include <optional>
#include <string>

#include "controller/Completion.h"
#include "data/CodPostalesDM.h"

namespace ambrel {

/// Seeks a street of the current municipality; if the row reached has another name, seeks again without type.
/// In a municipality with a single postal code, a row with another code is rejected and the first row becomes
/// current. Returns the result of the first search. Expects tag VIA.
[[nodiscard]] bool findStreet(TDMCodPostales& tables, const std::string& name, const std::string& type,
                              bool exact);

/// The same, but returns false without searching if POSTAL's tag is not VIA.
[[nodiscard]] bool findInStreets(TDMCodPostales& tables, const std::string& name, const std::string& type,
                                 bool exact);

/// Completes the typed text from the nearest street; null if its name begins differently. The code is CODIGO1
/// as a number.
[[nodiscard]] std::optional<NamedCompletion> completeStreet(TDMCodPostales& tables, const EditedText& edited,
                                                            const std::string& type);

/// If the current street occupies several rows, moves forward to the first one of the given type; stays if
/// there is none.
void chooseStreetType(TDMCodPostales& tables, const std::string& name, const std::string& type);

/// Moves POSTAL to a street of the municipality with the given INE code, or else to the same name without
/// type, or else to the municipality's first street. POSTAL does not move if the municipality is not found;
/// MUNICIPI keeps its tag.
void goToStreetOfMunicipality(TDMCodPostales& tables, const std::string& ineCode, const std::string& name,
                              const std::string& type);

} // namespace ambrel
