// What a municipality is called by.
#pragma once

#include <cstdint>

namespace ambrel::directory {

/// A municipality's five-digit code as a number: 28079.
using PlaceCode = std::uint32_t;

} // namespace ambrel::directory
