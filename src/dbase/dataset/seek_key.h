// Search keys: the tag's expression evaluated on a blank record into which the given pairs were written. All
// search keys are made this way.
#pragma once

#include <string>

#include "dbase/dataset/dataset.h"
#include "dbase/mdx/index_file.h"

namespace dbase {

/// The leading bytes of the key that the given pairs determine: all bytes, unless the pairs are only leading
/// fields of the tag. Pairs that name no column of the table or the tag are ignored. A text is cut to its
/// column; an integer for a character column is written in decimal, zero-padded to the column's width.
/// Errors: Error(BadValue) for a value that its column cannot hold.
[[nodiscard]] std::string makeSeekKey(const Tag& tag, const Schema& schema, const Key& parts);

} // namespace dbase
