// Folders with provinces, municipalities and streets, a small and a large one, for what a user sees of them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace bench {

inline constexpr unsigned provinceCount = 52, codesOfProvince = 1000;

/// One municipality for each postal code that the streets have.
struct MunicipalityRow {
    std::string ineCode, postalCode, name;
    bool isCapital = false;
};
[[nodiscard]] MunicipalityRow municipalityRow(unsigned number); // below provinceCount * codesOfProvince
[[nodiscard]] std::string provinceName(unsigned province);      // 1 to provinceCount

/// The province whose streets are looked at.
inline constexpr unsigned shownProvince = 28;

enum class Directory {
    Small, // a thousand streets, all in the province shown: far more than a list shows at once
    Large, // rowCount streets in all provinces, those of the small one among them
};

/// Names of the streets of the small directory.
[[nodiscard]] const std::vector<std::string>& smallDirectoryNames();

/// Folder of a directory, made at the first call.
[[nodiscard]] const std::string& directoryFolder(Directory directory);

/// Makes "DB" stand for such a folder for a block.
class DirectoryInUse {
public:
    explicit DirectoryInUse(Directory directory);
    ~DirectoryInUse();
    DirectoryInUse(const DirectoryInUse&) = delete;
    DirectoryInUse& operator=(const DirectoryInUse&) = delete;
};

} // namespace bench
