// Postal codes that rightly serve a municipality of another province.
#pragma once

#include <string_view>

namespace ambrel::directory {

/// The text of foreign_codes.txt.
[[nodiscard]] std::string_view foreignCodesText();

/// Whether the list has the pair.
[[nodiscard]] bool isKnownForeignCode(std::string_view postalCode, std::string_view ineCode);

} // namespace ambrel::directory
