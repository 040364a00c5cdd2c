// The page of a report on an audit.
#pragma once

#include <string>

#include "directory/audit/AuditReport.h"

namespace ambrel::directory {

/// HTML, as AuditReport::write() writes it.
[[nodiscard]] std::string auditPage(const AuditReport& report, const AuditTotals& totals);

} // namespace ambrel::directory
