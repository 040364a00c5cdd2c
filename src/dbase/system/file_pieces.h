// The pieces in which long files are written.
#pragma once

#include <cstdint>

namespace dbase {

/// A load or rebuild writes a piece at once, and pieces lie at multiples of this in the file: a system that
/// keeps files in large pages maps each by a single entry, and seeks wait less for address translation.
inline constexpr std::uint64_t pieceBytes = std::uint64_t{2} << 20;

} // namespace dbase
