// Names of places in the cadastre's form: the article in front, cut at 30 characters, no accents.
#pragma once

#include <string>

namespace callejero {

/// Both take a name of the postal tables in UTF-8, with the article after a comma: "CORUÑA, A" is "A CORUÑA",
/// "VILLAJOYOSA/VILA JOIOSA, LA" is "VILLAJOYOSA/LA VILA JOIOSA".
[[nodiscard]] std::string municipalityName(const std::string& name);
/// Of a name in two languages only the second is kept for a province.
[[nodiscard]] std::string provinceName(const std::string& name);

/// The first characters of a UTF-8 text, without trailing blanks.
[[nodiscard]] std::string cutAt(std::string text, std::size_t characters);

} // namespace callejero
