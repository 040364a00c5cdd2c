// Reading the start of a file.
#include "services/FileStart.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <system_error>

#include "dbase/system/system_reason.h"

namespace ambrel {

namespace {

std::nullopt_t refuse(std::string* reason, const std::string& text) {
    if (reason) {
        *reason = text;
    }
    return std::nullopt;
}

std::string notPlain(const std::filesystem::file_status& status) {
    return std::filesystem::is_directory(status) ? dbase::systemReason(EISDIR) : "no es un fichero corriente";
}

} // namespace

std::optional<std::string> fileStart(const std::string& path, std::size_t most, std::string* reason) {
    std::error_code failure;
    const std::filesystem::file_status status = std::filesystem::status(path, failure);
    if (failure) {
        return refuse(reason, dbase::systemReason(failure.value()));
    }
    if (!std::filesystem::is_regular_file(status)) {
        return refuse(reason, notPlain(status));
    }
    const std::uintmax_t size = std::filesystem::file_size(path, failure);
    if (failure) {
        return refuse(reason, dbase::systemReason(failure.value()));
    }
    errno = 0;
    std::ifstream file(path, std::ios::binary);
    if (!file.is_open()) {
        return refuse(reason, dbase::systemReason(errno));
    }
    std::string text(static_cast<std::size_t>(std::min<std::uintmax_t>(size, most)), '\0');
    file.read(text.data(), static_cast<std::streamsize>(text.size()));
    if (file.bad()) {
        return refuse(reason, dbase::systemReason(errno));
    }
    text.resize(static_cast<std::size_t>(file.gcount())); // another process may have truncated it since
    return text;
}

} // namespace ambrel
