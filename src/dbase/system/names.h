// Names of databases, files, tags, columns and functions: plain ASCII, letter case ignored.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>

namespace dbase {

/// The capital of an ASCII letter; any other byte unchanged.
[[nodiscard]] constexpr char upperLetter(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

[[nodiscard]] inline std::string upperName(std::string_view name) {
    std::string result(name);
    std::transform(result.begin(), result.end(), result.begin(), upperLetter);
    return result;
}

/// Whether two names are the same; allocates nothing.
[[nodiscard]] inline bool sameName(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return upperLetter(x) == upperLetter(y); });
}

} // namespace dbase
