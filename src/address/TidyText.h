// Typed texts in the form that the tables use.
#pragma once

#include <string>
#include <string_view>

namespace ambrel {

/// In capitals, without blanks at the ends and with single blanks inside; tabs and line ends count as blanks.
/// Text in Windows-1252.
[[nodiscard]] std::string tidied(std::string_view text);

} // namespace ambrel
