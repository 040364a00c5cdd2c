// What MUNICIPI holds, compared with what the earlier edition brought.
#pragma once

#include <string>
#include <vector>

#include "directory/Provenance.h"

namespace ambrel::directory {

/// A row of MUNICIPI. Texts in Windows-1252.
struct StoredPlace {
    dbase::RecordNumber record = 0;
    PlaceCode place = 0;
    bool isEntity = false, hasOneCode = false;
    std::uint32_t postalCode = 0;
    std::string name = {};
    Fingerprint fingerprint = 0;
    bool isOfEdition = false; // even if somebody has changed it
};

/// Rows that make no sense are left out. Finds out what has become of the earlier ones: PROCEDEN has no
/// number for them, so they are found by their values.
[[nodiscard]] std::vector<StoredPlace> readStoredPlaces(const StoredRows& table, EarlierEdition& earlier);

} // namespace ambrel::directory
