// Names of provinces among the words of an address.
#pragma once

#include <string_view>

#include "address/WrittenWords.h"

namespace ambrel {

/// Whether folded letters without blanks are a name of a province: "ACORUÑA".
[[nodiscard]] bool isProvince(std::string_view letters);

/// One of the ways in which all words of a range name a province: "Illes Balears", "Coruña, A".
[[nodiscard]] bool isProvince(const WrittenWords& words, WordRange range);

/// The beginning of the longest name of a province at the end of a range; its end if there is none.
[[nodiscard]] std::size_t provinceAtEnd(const WrittenWords& words, WordRange range);

} // namespace ambrel
