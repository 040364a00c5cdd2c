// The ways in which people write names. Texts in UTF-8.
#pragma once

#include <string>
#include <string_view>

#include "tools/Dice.h"

namespace customers {

/// "Gran Via de los Reyes": initials in capitals, small words in small letters.
[[nodiscard]] std::string titled(std::string_view name);
[[nodiscard]] std::string lowered(std::string_view name);
/// One letter wrong, missing, added or exchanged with the next one, never the first of the name.
[[nodiscard]] std::string mistyped(std::string_view name, invented::Dice& dice);
/// With words such as SANTA written short; the same if it has none.
[[nodiscard]] std::string shortened(std::string_view name);
/// A way to write a type: "C/", "Calle"...; the code if it is a rare one.
[[nodiscard]] std::string typeWord(std::string_view code, invented::Dice& dice);
/// "CORUÑA, A" as it is spoken; of two languages one.
[[nodiscard]] std::string spokenTown(std::string_view name, invented::Dice& dice);

} // namespace customers
