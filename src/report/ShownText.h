// Text from outside, made fit to be shown.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace report {

/// On one line, always valid UTF-8: line breaks of any kind become «↵», a tab a blank; characters that have
/// no shape or turn the direction of writing are marked. Cut after so many characters, and then it says how
/// many it had. `utf8`: any bytes.
[[nodiscard]] std::string shownText(std::string_view utf8, std::size_t mostCharacters = 300);

/// The end of a text that is cut: "… (7 caracteres)".
[[nodiscard]] std::string cutMark(std::size_t characters);

} // namespace report
