// The street row that is being added, changed or deleted.
#pragma once

#include "data/CodPostalesDM.h"

namespace ambrel {

/// Number ranges of a new street: all of it under one postal code.
inline constexpr int firstOdd = 1, lastOdd = 9999, firstEven = 2, lastEven = 9998;

/// Appends a row for the current municipality, with its province and open number ranges; all else stays
/// blank.
void beginStreet(TDMCodPostales& tables);

/// Whether users added the current street.
[[nodiscard]] bool isUserStreet(const TDMCodPostales& tables);

/// Whether the current street has a name that is more than blanks.
[[nodiscard]] bool hasStreetName(const TDMCodPostales& tables);

} // namespace ambrel
