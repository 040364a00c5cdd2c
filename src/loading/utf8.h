// UTF-8 text, character by character.
#pragma once

#include <string>
#include <string_view>

namespace loading {

/// The first character of a text; empty if the text is empty or does not begin with valid UTF-8.
[[nodiscard]] std::string_view firstCharacter(std::string_view text);

[[nodiscard]] bool isUtf8(std::string_view text);

/// `code`: any code point other than a surrogate.
void appendUtf8(std::string& text, char32_t code);

/// A value for a message: quoted, on one line, cut if long; characters that cannot be shown are marked.
[[nodiscard]] std::string inQuotes(std::string_view text);

} // namespace loading
