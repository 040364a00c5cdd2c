// The keys of records in a tag.
#pragma once

#include <span>

#include "dbase/mdx/index_file.h"

namespace dbase {

/// Writes the key of a record in a tag, exactly keyLength bytes.
void makeKey(const Tag& tag, const RecordView& record, std::span<char> key);

/// Writes the key that some engines give a negative number of a narrow column: its low 16 bits read without a
/// sign. False for any other record.
[[nodiscard]] bool makeUnsignedKey(const Tag& tag, const RecordView& record, std::span<char> key);

} // namespace dbase
