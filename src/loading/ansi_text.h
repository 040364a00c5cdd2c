// Text from outside in the tables' code page.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace loading {

/// UTF-8 in Windows-1252. An accent written as a character of its own joins the letter before it; "?" stands
/// for what the code page lacks. Null if the text is not UTF-8.
[[nodiscard]] std::optional<std::string> ansiFromUtf8(std::string_view text);

/// Windows-1252 in UTF-8.
[[nodiscard]] std::string utf8FromAnsi(std::string_view text);

} // namespace loading
