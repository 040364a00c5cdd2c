// Little-endian numbers in raw bytes.
#pragma once

#include <cstdint>
#include <cstring>

namespace dbase {

inline std::uint16_t load16(const char* p) {
    std::uint16_t value;
    std::memcpy(&value, p, sizeof value);
    return value;
}
inline std::uint32_t load32(const char* p) {
    std::uint32_t value;
    std::memcpy(&value, p, sizeof value);
    return value;
}
inline std::uint64_t load64(const char* p) {
    std::uint64_t value;
    std::memcpy(&value, p, sizeof value);
    return value;
}
inline void store16(char* p, std::uint16_t value) { std::memcpy(p, &value, sizeof value); }
inline void store32(char* p, std::uint32_t value) { std::memcpy(p, &value, sizeof value); }
inline void store64(char* p, std::uint64_t value) { std::memcpy(p, &value, sizeof value); }

} // namespace dbase
