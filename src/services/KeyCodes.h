// The 16-bit key codes passed to key handlers. The code of a letter or digit is that of its capital in
// Windows-1252.
#pragma once

#include <cstdint>

#include "services/Rnumcad.h" // isAlphanumeric: the test of a code's low byte

namespace ambrel::key_code {

inline constexpr std::uint16_t none = 0; // a key without a code
inline constexpr std::uint16_t enter = 13;
inline constexpr std::uint16_t escape = 27;
inline constexpr std::uint16_t space = 32;
inline constexpr std::uint16_t pageUp = 33;
inline constexpr std::uint16_t pageDown = 34;
inline constexpr std::uint16_t up = 38;
inline constexpr std::uint16_t down = 40;
inline constexpr std::uint16_t printScreen = 44;
inline constexpr std::uint16_t insert = 45;
inline constexpr std::uint16_t remove = 46;
inline constexpr std::uint16_t comma = 188;

} // namespace ambrel::key_code
