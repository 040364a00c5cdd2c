// Reading the configuration's INI file.
#pragma once

#include <optional>
#include <string>

namespace ambrel {

/// Settings found in an INI file; the others are null. Texts are Windows-1252, the folder is an absolute
/// UTF-8 path.
struct ConfigValues {
    std::optional<std::string> alias, folder;
    std::optional<int> province, municipality;
    std::optional<std::string> provinceName, provinceOfStreets, municipalityName;
    std::optional<bool> minorEntities, securesOnDisk;
    std::optional<std::string> directoryServer, actionPrefix, xmlNamespace;
};

/// Errors: those of TConfig::loadIni.
[[nodiscard]] ConfigValues readConfig(const std::string& path);

} // namespace ambrel
