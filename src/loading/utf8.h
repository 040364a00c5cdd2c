// UTF-8 text, character by character.
#pragma once

#include <string>
#include <string_view>

namespace loading {

[[nodiscard]] bool isUtf8(std::string_view text);

/// `code`: any code point other than a surrogate.
void appendUtf8(std::string& text, char32_t code);

} // namespace loading
