// What the difference between two names takes from the confidence.
#pragma once

#include "address/NameLikeness.h"

namespace ambrel {

/// Without what only the names of the province can say: whether a word with slips is a real one.
[[nodiscard]] double nameDoubt(const NameLikeness& likeness);

} // namespace ambrel
