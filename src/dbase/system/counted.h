// A number with its noun.
#pragma once

#include <cstdint>
#include <string>

namespace dbase {

/// "1 registro", "0 registros", "3 registros".
[[nodiscard]] inline std::string counted(std::uint64_t number, const char* one, const char* many) {
    return std::to_string(number) + ' ' + (number == 1 ? one : many);
}

} // namespace dbase
