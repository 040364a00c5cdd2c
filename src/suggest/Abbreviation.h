// Names made shorter as people do it.
#pragma once

#include <string>
#include <string_view>

namespace ambrel::suggest {

/// A name in capitals with the usual short forms of its words, from the last word to the first, until it has
/// at most `width` letters; longer if they do not suffice. Windows-1252.
[[nodiscard]] std::string abbreviated(std::string_view name, std::size_t width);

} // namespace ambrel::suggest
