// What an edition does to the tables as they are.
#pragma once

#include <vector>

#include "directory/DirectoryChange.h"
#include "directory/Edition.h"
#include "directory/StoredState.h"
#include "directory/TableChanges.h"

namespace ambrel::directory {

/// Compares MUNICIPI, then POSTAL, with an edition whose municipalities have names. `state`: as read from the
/// tables, worth nothing afterwards; `types`: of TIPO_VIA. Errors: loading::Failure; what changes and
/// observer throw.
[[nodiscard]] LoadSummary compareEdition(Edition& edition, RangeOpening opening,
                                         const std::vector<StreetTypeRow>& types, const StoredTables& tables,
                                         StoredState& state, TableChanges& changes,
                                         const LoadObserver& observer);

} // namespace ambrel::directory
