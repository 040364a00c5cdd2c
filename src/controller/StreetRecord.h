// The street row being added, changed or deleted.
#pragma once

#include "controller/NumberRange.h"
#include "data/CodPostalesDM.h"

namespace ambrel {

/// Appends a row for the current municipality, with its province and open number ranges; everything else
/// stays blank.
void beginStreet(TDMCodPostales& tables);

/// The number ranges of the current street.
[[nodiscard]] StretchRanges rangesOf(const TDMCodPostales& tables);
/// Writes them into the pending row.
void setRanges(TDMCodPostales& tables, const StretchRanges& ranges);

/// Whether the current street was added by a user.
[[nodiscard]] bool isUserStreet(const TDMCodPostales& tables);

/// Whether the current street's name is more than blanks.
[[nodiscard]] bool hasStreetName(const TDMCodPostales& tables);

} // namespace ambrel
