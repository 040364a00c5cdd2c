// The province that a postal code belongs to.
#pragma once

#include <string>

namespace ambrel {

/// Name of the province whose code is the number in the first two characters; empty if PROVIN has none.
[[nodiscard]] std::string provinceName(const std::string& postalCode, const std::string& database = "DB");

} // namespace ambrel
