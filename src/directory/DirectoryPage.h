// Draws the report on the load of an edition.
#pragma once

#include <string>

#include "directory/DirectoryReport.h"

namespace ambrel::directory {

/// The page, as DirectoryReport::write() writes it.
[[nodiscard]] std::string directoryPage(const DirectoryReport& report, const LoadSummary& summary,
                                        const EditionNotes& notes);

} // namespace ambrel::directory
