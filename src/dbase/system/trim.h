// Texts without what surrounds them. What counts as surrounding differs: columns are filled up with blanks,
// lines of files also end in tabs and line ends.
#pragma once

#include <string_view>

namespace dbase {

/// Whether a character is the blank that fills up columns; nothing else is.
[[nodiscard]] constexpr bool isBlank(char c) { return c == ' '; }
/// Whether a character leaves no mark in a plain ASCII text: a blank or any control character. A
/// non-breaking space of Windows-1252 does not count.
[[nodiscard]] constexpr bool isBlankOrControl(char c) { return static_cast<unsigned char>(c) <= ' '; }

/// The text without the characters at its start, at its end, or at both, for which `surrounds` holds; part of
/// the text given.
template<typename Surrounds>
[[nodiscard]] constexpr std::string_view trimmedLeft(std::string_view text, Surrounds surrounds) {
    while (!text.empty() && surrounds(text.front())) {
        text.remove_prefix(1);
    }
    return text;
}
template<typename Surrounds>
[[nodiscard]] constexpr std::string_view trimmedRight(std::string_view text, Surrounds surrounds) {
    while (!text.empty() && surrounds(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}
template<typename Surrounds>
[[nodiscard]] constexpr std::string_view trimmed(std::string_view text, Surrounds surrounds) {
    return trimmedRight(trimmedLeft(text, surrounds), surrounds);
}

/// The text without blanks at its start or at its end.
[[nodiscard]] constexpr std::string_view withoutLeadingBlanks(std::string_view text) {
    return trimmedLeft(text, isBlank);
}
[[nodiscard]] constexpr std::string_view withoutTrailingBlanks(std::string_view text) {
    return trimmedRight(text, isBlank);
}

/// A line of a file or an answer from outside, without the blanks, tabs, line ends and other control
/// characters at both ends.
[[nodiscard]] constexpr std::string_view trimmedLine(std::string_view text) {
    return trimmed(text, isBlankOrControl);
}

} // namespace dbase
