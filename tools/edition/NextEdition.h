// The edition that follows a made-up one.
#pragma once

#include <string>

#include "tools/edition/OfficialEdition.h"

namespace edition {

/// Writes the files half a year later into another folder that exists. Of the stretches one in `changedEvery`
/// is gone or has another postal code or another last number, in turn; of the streets one in so many has
/// another name, and as many are new. `before`: in the layouts since July 2025. Errors: std::runtime_error.
Files writeNextEdition(const Files& before, const std::string& folder, unsigned changedEvery);

} // namespace edition
