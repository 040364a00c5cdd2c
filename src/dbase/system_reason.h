// Why the system refused, in the language of our texts.
#pragma once

#include <string>

#include "AmbrelExport.h"

namespace dbase {

/// Spanish text of an `errno` value; the system's own words for the rare ones.
[[nodiscard]] AMBREL_EXPORT std::string systemReason(int number);

} // namespace dbase
