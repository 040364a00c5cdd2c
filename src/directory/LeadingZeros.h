// Codes and keys, which are numbers in a fixed width.
#pragma once

#include <cstdint>
#include <string>

namespace ambrel::directory {

/// A number in digits, with leading zeros.
[[nodiscard]] inline std::string digits(std::uint32_t value, std::size_t width) {
    std::string text = std::to_string(value);
    return text.size() < width ? std::string(width - text.size(), '0') + text : text;
}

} // namespace ambrel::directory
