// How much of a journal counts.
#pragma once

#include <cstdint>

namespace dbase {

/// The most that is read of any journal, whatever its size.
inline constexpr std::uint64_t largestJournal = std::uint64_t{64} << 20;

} // namespace dbase
