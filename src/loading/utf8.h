// UTF-8 text, character by character.
#pragma once

#include <string>
#include <string_view>

namespace loading {

/// The first character of a text; empty when what it begins with is no UTF-8, or the text is.
[[nodiscard]] std::string_view firstCharacter(std::string_view text);

[[nodiscard]] bool isUtf8(std::string_view text);

/// `code`: any code point that is no surrogate.
void appendUtf8(std::string& text, char32_t code);

/// A value for a message: in quotes and in one line, cut where it is long; what cannot be shown is marked.
[[nodiscard]] std::string inQuotes(std::string_view text);

} // namespace loading
