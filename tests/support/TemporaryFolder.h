// A folder of its own for a test.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

/// Created empty, and removed with its contents at the end.
class TemporaryFolder {
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    [[nodiscard]] std::string path() const { return path_.string(); }
    /// Path of a name inside, which need not exist.
    [[nodiscard]] std::string operator/(std::string_view name) const { return (path_ / name).string(); }
    /// Writes a file inside and returns its path.
    std::string write(std::string_view name, std::string_view content) const;

private:
    std::filesystem::path path_;
};
