// Trims texts from outside.
#pragma once

#include <string_view>

namespace ambrel {

/// The text without blanks and control characters at both ends: lines and answers come with tabs and line
/// ends. Returns a part of the given text.
[[nodiscard]] inline std::string_view trimmed(std::string_view text) {
    const auto isInk = [](char c) { return static_cast<unsigned char>(c) > ' '; };
    while (!text.empty() && !isInk(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && !isInk(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

} // namespace ambrel
