// The repairs of "ambcp revisar".
#pragma once

#include <optional>

#include "directory/audit/Finding.h"
#include "tools/commands.h"

namespace ambcp {

/// Mends the classes named in the options, or lists what would be mended. Errors: as those of the orders.
[[nodiscard]] ExitCode repairTables(const ReviewOptions& options,
                                    std::optional<ambrel::directory::AuditedTable> only);

} // namespace ambcp
