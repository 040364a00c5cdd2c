// What the municipality cursors of the data modules share: the filter that hides minor population entities,
// and the name under which a record is shown.
#pragma once

#include <string>

#include "dbase/dataset/dataset.h"

namespace ambrel {

/// After-open hook of a browsing cursor: hides minor entities unless the configuration asks for them, and
/// shows those hidden by an earlier opening of the cursor again.
void hideMinorEntities(dbase::Dataset& municipalities);

/// Calculates the browsing cursor's `NOMBRE_COMPLETO`: the name, followed for a minor entity by the
/// municipality it belongs to. `all` is a second, unfiltered cursor in COD_INE order; only that one moves.
void calculateWholeName(dbase::Dataset& municipalities, dbase::Dataset& all);

} // namespace ambrel
