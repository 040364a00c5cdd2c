// What the tables hold before an edition changes them.
#pragma once

#include <vector>

#include "directory/StoredPlaces.h"
#include "directory/StoredStreets.h"

namespace ambrel::directory {

struct StoredState {
    EarlierEdition earlier; // with what has become of its rows
    std::vector<StoredPlace> places;
    StoredStreets streets;
};

/// Reads all three tables.
[[nodiscard]] StoredState readStoredState(const StoredTables& tables, const LoadingProgress& progress);

} // namespace ambrel::directory
