// File name masks.
#pragma once

#include <string_view>

namespace ambrel {

/// Whether a name (UTF-8) matches a mask: * stands for any characters, ? for one, "*.*" for every name;
/// letter case is ignored.
[[nodiscard]] bool matchesMask(std::string_view name, std::string_view mask);

} // namespace ambrel
