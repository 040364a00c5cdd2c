// Pending rows: those that are being added or changed, until they are posted or dropped.
#pragma once

#include "dbase/dataset/dataset_types.h"

namespace dbase {

/// Whether a dataset in this state has a pending row.
[[nodiscard]] constexpr bool isPending(DatasetState state) {
    return state == DatasetState::Insert || state == DatasetState::Edit;
}

} // namespace dbase
