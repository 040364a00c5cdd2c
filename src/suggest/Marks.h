// Which letters of a suggestion were typed.
#pragma once

#include <cstddef>
#include <string_view>
#include <utility>
#include <vector>

namespace ambrel::suggest {

/// The letters of a name, as stored, that a text also has in the same order word by word: first position and
/// length of each run. Texts in Windows-1252.
[[nodiscard]] std::vector<std::pair<std::size_t, std::size_t>> matchingLetters(std::string_view name,
                                                                               std::string_view typed);

} // namespace ambrel::suggest
