// Database names: which folder "DB" and the other aliases stand for, and which file a table name means there.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "AmbrelExport.h"

namespace dbase {

/// Makes `name` (letter case ignored) stand for a folder from now on. An empty folder forgets the name.
AMBREL_EXPORT void setDatabaseFolder(std::string_view name, std::string folder);

/// The folder of a database name. Errors: Error(NotFound) for a name that was never given a folder.
[[nodiscard]] AMBREL_EXPORT std::string databaseFolder(std::string_view name);

/// Path of a table in a folder, with or without ".DBF", found whatever its letter case; null when it is not
/// there. Errors: Error(NotFound) when the folder itself is not there.
[[nodiscard]] AMBREL_EXPORT std::optional<std::string> findTableFile(const std::string& folder,
                                                                     std::string_view table);

/// Path of the production index beside a table file, found whatever its letter case; null when there is none.
[[nodiscard]] AMBREL_EXPORT std::optional<std::string> findIndexFile(const std::string& tableFile);

} // namespace dbase
