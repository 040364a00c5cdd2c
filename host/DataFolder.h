// The folder of the tables that the program works with.
#pragma once

#include <QString>
#include <functional>
#include <string>

namespace host {

/// Database name of the host's own table.
inline constexpr const char* hostDatabase = "AMBREL";

/// The folder of the user's own tables, which may not exist yet.
[[nodiscard]] QString userDataFolder();

/// Creates the postal tables with the sample data in an empty folder. Errors: those of the creation.
using SampleCreator = std::function<void(const std::string& folder)>;

/// Sets the folder that the database names stand for: the given one, else the configured one, else the user's
/// own, whose tables are created with the sample data, all or none, at the first start. Creates the host's
/// table where it is missing. Errors: std::exception with a Spanish text for a folder or table that cannot be
/// used.
void chooseFolder(const QString& given, const SampleCreator& createSample);

} // namespace host
