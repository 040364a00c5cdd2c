// Names of databases, files, tags, columns and functions: letter case never matters, and they are plain
// ASCII.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>

namespace dbase {

/// Of ASCII letters alone; any other byte stays.
[[nodiscard]] constexpr char upperLetter(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

[[nodiscard]] inline std::string upperName(std::string_view name) {
    std::string result(name);
    std::transform(result.begin(), result.end(), result.begin(), upperLetter);
    return result;
}

/// Whether two names are the same one; nothing is allocated.
[[nodiscard]] inline bool sameName(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return upperLetter(x) == upperLetter(y); });
}

} // namespace dbase
