// What the difference between two names takes from the confidence.
#pragma once

#include "address/NameLikeness.h"

namespace ambrel {

/// Without what the tables say: whether what was written is another name.
[[nodiscard]] double nameDoubt(const NameLikeness& likeness);

} // namespace ambrel
