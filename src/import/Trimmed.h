// Texts from outside, without what surrounds them.
#pragma once

#include <string_view>

namespace ambrel {

/// Without blanks and control characters at both ends: lines and answers come with tabs and line ends. Part
/// of the text given.
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
