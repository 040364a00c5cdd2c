// Search keys: the tag's expression on a blank record into which the given pairs were written. The one way for all keys.
#pragma once

#include <string>

#include "dbase/dataset.h"
#include "dbase/index_file.h"

namespace dbase {

struct SeekKey {
    std::string bytes;       // keyLength bytes
    std::size_t covered = 0; // leading bytes that the given pairs settle; all when they settle none
};

/// Pairs that name no column, or none of the tag's, change nothing. A text is cut to its column; an integer for a
/// character column is written in decimal, zero-padded to the column's width.
[[nodiscard]] SeekKey makeSeekKey(const Tag& tag, const Schema& schema, const Key& parts);

} // namespace dbase
