// What POSTAL holds, compared with what the earlier edition brought.
#pragma once

#include "directory/OwnStreets.h"
#include "directory/Provenance.h"
#include "directory/StreetKeys.h"

namespace ambrel::directory {

/// Beside the rows that an edition brought.
struct StoredStreets {
    OwnStreets own; // those that it did not bring, or that somebody has changed since
    StreetKeys keys;
};

/// The municipalities of a name where a street with a postal code may be. Windows-1252.
using PlacesNamed = std::function<std::vector<PlaceCode>(std::string_view name, std::string_view postalCode)>;

/// Reads POSTAL, finds out what has become of each earlier row, and collects what else there is. A row
/// without COD_INE is of the municipalities that its MUNICIPI names.
[[nodiscard]] StoredStreets readStoredStreets(const StoredRows& table, EarlierEdition& earlier,
                                              const PlacesNamed& placesNamed,
                                              const LoadingProgress& progress);

} // namespace ambrel::directory
