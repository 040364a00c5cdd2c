// Reasons why the system refused, in Spanish.
#pragma once

#include <string>

#include "AmbrelExport.h"

namespace dbase {

/// Spanish text of an `errno` value; for a rare one its number and, in brackets, the system's own text.
[[nodiscard]] AMBREL_EXPORT std::string systemReason(int number);

} // namespace dbase
