// From a house number to the row of its street whose ranges hold it.
#pragma once

#include "data/CodPostalesDM.h"

namespace ambrel {

/// From the current row on, among the rows with its name and type; true on the row that holds the number.
/// Otherwise false, and the last row of the street with that type is current.
[[nodiscard]] bool walkToNumber(TDMCodPostales& tables, int number);

/// From the current row on, among the rows with its name and without type; true on the row that holds the
/// number. Otherwise false, and the row where the walk began is current.
[[nodiscard]] bool walkToNumberWithoutType(TDMCodPostales& tables, int number);

} // namespace ambrel
