// Names without accents.
#pragma once

#include <string>
#include <string_view>

namespace ambrel {

/// A text in capitals without the accents that tables often leave out; Ñ and Ç stay. Text in Windows-1252.
[[nodiscard]] std::string withoutAccents(std::string_view text);

/// Whether two texts have the same letters and digits: case, accents, blanks and punctuation apart.
[[nodiscard]] bool hasSameLetters(std::string_view a, std::string_view b);

} // namespace ambrel
