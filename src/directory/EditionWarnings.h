// What ought to be looked at in an edition that is loaded.
#pragma once

#include <string>
#include <vector>

#include "directory/DirectoryChange.h"
#include "directory/EditionFiles.h"

namespace ambrel::directory {

/// Dates, losses, and what was left out or shortened: Spanish, UTF-8, without capital letter and full stop;
/// one may have several lines.
[[nodiscard]] std::vector<std::string> warningsOf(const EditionNotes& notes, const LoadSummary& summary);

} // namespace ambrel::directory
