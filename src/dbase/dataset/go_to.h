// Searches whose result says nothing that the caller needs: it looks at the record that is then current.
#pragma once

#include "dbase/dataset/dataset.h"

namespace dbase {

/// To the first record at or after the key; past the last one, to the last. An empty table has nowhere to go.
inline void goToNearest(Dataset& table, const Key& key) {
    static_cast<void>(table.seek(key, SeekMode::Nearest));
}

/// To the first record with the key; if there is none, the current one stays.
inline void goToIfThere(Dataset& table, const Key& key) {
    static_cast<void>(table.seek(key, SeekMode::Exact));
}

} // namespace dbase
