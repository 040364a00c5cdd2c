// Names of databases, files, tags and columns: letter case never matters, and they are plain ASCII.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>

namespace dbase {

[[nodiscard]] inline std::string upperName(std::string_view name) {
    std::string result(name);
    std::transform(result.begin(), result.end(), result.begin(),
                   [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; });
    return result;
}

} // namespace dbase
