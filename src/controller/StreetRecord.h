// The street row being added, changed or deleted.
#pragma once

#include "data/CodPostalesDM.h"

namespace ambrel {

/// Number ranges of a new street: the whole street under one postal code.
inline constexpr int firstOdd = 1, lastOdd = 9999, firstEven = 2, lastEven = 9998;

/// Appends a row for the current municipality, with its province and open number ranges; everything else
/// stays blank.
void beginStreet(TDMCodPostales& tables);

/// Whether the current street was added by a user.
[[nodiscard]] bool isUserStreet(const TDMCodPostales& tables);

/// Whether the current street's name is more than blanks.
[[nodiscard]] bool hasStreetName(const TDMCodPostales& tables);

} // namespace ambrel
