// Draws the report on many addresses.
#pragma once

#include <string>

#include "address/ValidationFindings.h"

namespace ambrel {

/// The whole page, in HTML.
[[nodiscard]] std::string validationPage(const ValidationRun& run, const ValidationFindings& findings);

} // namespace ambrel
