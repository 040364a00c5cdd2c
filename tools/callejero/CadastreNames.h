// Names of places in the cadastre's way: the article in front, cut at 30 characters, no accents.
#pragma once

#include <string>

namespace callejero {

/// Both take a name of the postal tables in UTF-8, the article behind a comma: "CORUÑA, A" is "A CORUÑA",
/// "VILLAJOYOSA/VILA JOIOSA, LA" is "VILLAJOYOSA/LA VILA JOIOSA".
[[nodiscard]] std::string municipalityName(const std::string& name);
/// Of two languages a province has the second only.
[[nodiscard]] std::string provinceName(const std::string& name);

/// The first characters of a UTF-8 text, without blanks at the end.
[[nodiscard]] std::string cutAt(std::string text, std::size_t characters);

} // namespace callejero
