// Loading CSV into a table: all of it or nothing.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "dbase/table/bulk_loader.h"
#include "loading/csv.h"

namespace loading {

/// Called while rows are read (share below 0) and while the tags are built (share 0 to 1).
using LoadProgress = std::function<void(std::uint64_t rows, double share)>;

/// Adds the rows of a CSV text to a table; the first row names the columns, in any order, and those not named
/// stay blank. MUNICIPI, when replaced, is put in COD_INE order. Returns the number of rows. Errors: Failure
/// with text, line and column of every value that cannot be loaded (as in LoadComplaints), dbase::Error; the
/// table is then unchanged.
std::uint64_t loadCsv(CsvReader& csv, const std::string& tableFile, dbase::BulkLoader::Mode mode,
                      const LoadProgress& progress = {});

} // namespace loading
