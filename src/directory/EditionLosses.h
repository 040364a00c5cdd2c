// Whether an edition takes away so much that its files cannot be whole.
#pragma once

#include <string>

#include "directory/DirectoryChange.h"
#include "directory/Edition.h"
#include "directory/Provenance.h"

namespace ambrel::directory {

/// What would go in such numbers, a line for each province of POSTAL and for MUNICIPI, in Spanish: the office
/// gives up a few streets of a hundred in half a year, a download that broke many. Empty if there is nothing
/// of the kind. `summary`: of the whole edition.
[[nodiscard]] std::string unlikelyLosses(const Edition& edition, const EarlierEdition& earlier,
                                         const LoadSummary& summary);

} // namespace ambrel::directory
