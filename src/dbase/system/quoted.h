// Text from outside in messages: bounded, on one line, always valid UTF-8.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace dbase {

/// The first character of a text; empty if the text is empty or does not begin with valid UTF-8.
[[nodiscard]] std::string_view firstCharacter(std::string_view text);

/// A value for a message: quoted, on one line, cut if long; characters that cannot be shown are marked.
[[nodiscard]] std::string inQuotes(std::string_view text, std::size_t mostCharacters = 60);

} // namespace dbase
