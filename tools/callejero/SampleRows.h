// Rows of the sample's tables.
#pragma once

#include "tools/callejero/CsvRows.h"

namespace callejero {

/// The rows of a table by its name. Errors: std::logic_error if the sample has no such table.
[[nodiscard]] std::vector<CsvRow> sampleRows(const std::string& table);

} // namespace callejero
