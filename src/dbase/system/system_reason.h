// Why the system refused, in the language of our texts.
#pragma once

#include <string>

#include "AmbrelExport.h"

namespace dbase {

/// Spanish text of an `errno` value; of a rare one its number and, in brackets, the system's own words.
[[nodiscard]] AMBREL_EXPORT std::string systemReason(int number);

} // namespace dbase
