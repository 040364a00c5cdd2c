// Reading the start of a file.
#include "services/FileStart.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <system_error>

namespace ambrel {

std::optional<std::string> fileStart(const std::string& path, std::size_t most) {
    std::error_code failure;
    if (!std::filesystem::is_regular_file(path, failure))
        return std::nullopt;
    const std::uintmax_t size = std::filesystem::file_size(path, failure);
    std::ifstream file(path, std::ios::binary);
    if (failure || !file.is_open())
        return std::nullopt;
    std::string text(static_cast<std::size_t>(std::min<std::uintmax_t>(size, most)), '\0');
    file.read(text.data(), static_cast<std::streamsize>(text.size()));
    if (file.bad())
        return std::nullopt;
    text.resize(static_cast<std::size_t>(file.gcount())); // somebody may have cut it meanwhile
    return text;
}

} // namespace ambrel
