// The faults of one name as findings.
#pragma once

#include "directory/audit/Finding.h"

namespace ambrel::directory {

/// A name in Windows-1252; `column`: where it stands. `about`: record, key and so on of the findings.
void auditName(std::string_view name, std::string_view column, const Finding& about, const FindingSink& sink);

/// A text in the place of a postal code that is none. `ofWhat`: in UTF-8.
[[nodiscard]] Finding withoutPostalCode(const Finding& about, std::string_view code,
                                        const std::string& ofWhat);

/// The same finding with a class, its usual severity, a text and a proposal.
[[nodiscard]] Finding withText(Finding about, FindingClass kind, std::string text, std::string proposal = {});

} // namespace ambrel::directory
