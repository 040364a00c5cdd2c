// Rows of a CSV text by the column names in its first line.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "loading/csv.h"

namespace callejero {

using CsvRow = std::map<std::string, std::string>; // value by column

/// All rows; a row that is too short lacks its last columns. Errors: loading::CsvError, also for a row with
/// more values than the first line has names.
[[nodiscard]] std::vector<CsvRow> csvRows(loading::TextSource source, const std::string& name);

} // namespace callejero
