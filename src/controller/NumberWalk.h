// From a house number to the row of its street whose ranges hold it.
#pragma once

#include "data/CodPostalesDM.h"

namespace ambrel {

/// Walks from the current row through the rows with its name and type; true on the row that holds the number.
/// Otherwise false, with the last row of the street with that type current.
[[nodiscard]] bool walkToNumber(TDMCodPostales& tables, int number);

/// Walks from the current row through the rows with its name and without type; true on the row that holds the
/// number. Otherwise false, with the starting row current.
[[nodiscard]] bool walkToNumberWithoutType(TDMCodPostales& tables, int number);

} // namespace ambrel
