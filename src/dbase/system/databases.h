// Database names: the folders that "DB" and other aliases stand for, and the files of the tables in them.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "AmbrelExport.h"

namespace dbase {

/// Registers a folder under `name` (letter case ignored). An empty folder removes the name.
AMBREL_EXPORT void setDatabaseFolder(std::string_view name, std::string folder);

/// The folder of a database name. Errors: Error(NotFound) for a name that is not registered.
[[nodiscard]] AMBREL_EXPORT std::string databaseFolder(std::string_view name);

/// Path of a table in a folder, with or without ".DBF", letter case ignored; null if there is none. Errors:
/// Error(NotFound) if the folder itself does not exist.
[[nodiscard]] AMBREL_EXPORT std::optional<std::string> findTableFile(const std::string& folder,
                                                                     std::string_view table);

/// Path of the production index beside a table file, letter case ignored; null if there is none.
[[nodiscard]] AMBREL_EXPORT std::optional<std::string> findIndexFile(const std::string& tableFile);

} // namespace dbase
