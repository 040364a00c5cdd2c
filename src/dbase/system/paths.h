// Paths of the files of a table, which share a folder and name and differ in their extension.
#pragma once

#include <string>
#include <string_view>

namespace dbase {

/// Name of a file without folder and extension: "POSTAL" for "/datos/POSTAL.DBF".
[[nodiscard]] inline std::string baseName(const std::string& path) {
    const std::size_t begin = path.rfind('/') + 1; // 0 if there is no folder
    const std::string name = path.substr(begin);
    return name.substr(0, name.rfind('.'));
}

/// The folder of a file: "/datos" for "/datos/POSTAL.DBF", "." for "POSTAL.DBF".
[[nodiscard]] inline std::string folderOf(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? "." : slash == 0 ? "/" : path.substr(0, slash);
}

/// The same path with another extension: "/datos/POSTAL.MDX" for "/datos/POSTAL.DBF" and ".MDX".
[[nodiscard]] inline std::string withExtension(const std::string& path, std::string_view extension) {
    return path.substr(0, path.rfind('/') + 1) + baseName(path) + std::string(extension);
}

} // namespace dbase
