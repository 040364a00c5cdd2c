// Folders with provinces, municipalities and streets, a small and a large one, for benchmarks of the windows.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace bench {

inline constexpr unsigned provinceCount = 52, codesOfProvince = 1000;

/// One municipality for each postal code of the streets.
struct MunicipalityRow {
    std::string ineCode, postalCode, name;
    bool isCapital = false;
};
[[nodiscard]] MunicipalityRow municipalityRow(unsigned number); // below provinceCount * codesOfProvince
[[nodiscard]] std::string provinceName(unsigned province);      // 1 to provinceCount

/// The province whose streets are shown.
inline constexpr unsigned shownProvince = 28;

enum class Directory {
    Small, // a thousand streets, all in the shown province: far more than a list shows at once
    Large, // rowCount streets in all provinces, including those of the small one
};

/// Names of the streets of the small directory.
[[nodiscard]] const std::vector<std::string>& smallDirectoryNames();

/// The folder of a directory, created at the first call.
[[nodiscard]] const std::string& directoryFolder(Directory directory);

/// Makes "DB" stand for such a folder as long as it exists.
class DirectoryInUse {
public:
    explicit DirectoryInUse(Directory directory);
    ~DirectoryInUse();
    DirectoryInUse(const DirectoryInUse&) = delete;
    DirectoryInUse& operator=(const DirectoryInUse&) = delete;
};

} // namespace bench
