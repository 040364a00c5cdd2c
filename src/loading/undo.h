// Puts back what an undo file keeps.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "loading/undone_table.h"

namespace loading {

class UndoReader;

/// Called with the entries seen to so far and all of them; false ends the work after this entry.
using UndoProgress = std::function<bool(std::uint64_t done, std::uint64_t total)>;

/// Puts back the rows of an undo file, the last entry first, as far as nobody has changed them since; may be
/// repeated, and stopped at any moment. `folder`: where its tables are now; empty for where they were.
/// `observer`: gets what is left alone. Errors: Failure and dbase::Error for a table that is missing,
/// read-only or has other columns, and without `folder` for an undo file that lies beside another table of
/// that name, before anything is changed; dbase::Error afterwards, and what was put back stays.
[[nodiscard]] UndoTotals undo(const UndoReader& file, const std::string& folder,
                              const UndoneTable::Observer& observer, const UndoProgress& progress = {});

} // namespace loading
