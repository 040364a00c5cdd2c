// The package version that a host was compiled with, and the one it has loaded.
//
// AMBREL_VERSION is the version of these headers as a number, also for the preprocessor: compare it with
// AMBREL_VERSION_CHECK(0, 3, 0) for 0.3.0. AMBREL_VERSION_MAJOR, AMBREL_VERSION_MINOR and
// AMBREL_VERSION_PATCH are its parts, AMBREL_VERSION_TEXT is "0.3.0".
#pragma once

#include "AmbrelExport.h"
#include "AmbrelVersion.h"

namespace ambrel {

/// Version of the loaded library, such as "0.3.0".
[[nodiscard]] AMBREL_EXPORT const char* version();

/// The same as a number; compare it with AMBREL_VERSION_CHECK(major, minor, patch).
[[nodiscard]] AMBREL_EXPORT int versionNumber();

} // namespace ambrel
