// What the municipality cursors of the data modules have in common: the filter that hides minor population
// entities, and the name under which a record is shown.
#pragma once

#include <string>

#include "dbase/dataset/dataset.h"

namespace ambrel {

/// Width of `NOMBRE_COMPLETO`.
inline constexpr std::size_t wholeNameWidth = 100;

/// After-open hook of a browsing cursor: hides minor entities unless the configuration asks for them, and
/// shows again those that an earlier opening of the cursor hid.
void hideMinorEntities(dbase::Dataset& municipalities);

/// Calculation of the browsing cursor's `NOMBRE_COMPLETO`: the name and, behind a minor entity's, the
/// municipality that it belongs to. `all` is a second, unfiltered cursor in the order of COD_INE; only that
/// one moves.
void calculateWholeName(dbase::Dataset& municipalities, dbase::Dataset& all);

} // namespace ambrel
