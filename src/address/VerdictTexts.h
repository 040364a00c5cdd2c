// What verdicts are called before users, and what they should do about them. Spanish, UTF-8.
#pragma once

#include <string_view>

#include "AmbrelExport.h"
#include "address/JudgedAddress.h"

namespace ambrel {

/// "Vía desconocida".
[[nodiscard]] AMBREL_EXPORT std::string_view verdictTitle(Verdict verdict);
/// A sentence or two: what was found.
[[nodiscard]] AMBREL_EXPORT std::string_view verdictMeaning(Verdict verdict);
/// A sentence: what to do about it; empty if nothing has to be done.
[[nodiscard]] AMBREL_EXPORT std::string_view verdictAdvice(Verdict verdict);

} // namespace ambrel
