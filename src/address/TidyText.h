// Typed texts as the tables write theirs.
#pragma once

#include <string>
#include <string_view>

namespace ambrel {

/// In capitals, without blanks at the ends and with single ones inside; tabs and line ends are blanks. Text
/// in Windows-1252.
[[nodiscard]] std::string tidied(std::string_view text);

} // namespace ambrel
