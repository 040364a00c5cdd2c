// The routines that the host offers for trying.
#pragma once

#include <vector>

#include "host/routines/Routine.h"

namespace host::routines {

/// Routines that may show a list.
[[nodiscard]] std::vector<Routine> municipalityLists();
[[nodiscard]] std::vector<Routine> otherLists();
[[nodiscard]] std::vector<Routine> streetLists();
/// Routines that answer without asking.
[[nodiscard]] std::vector<Routine> utilities();

} // namespace host::routines
