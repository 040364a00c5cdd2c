// The keys under which a tag files a record.
#pragma once

#include <span>

#include "dbase/mdx/index_file.h"

namespace dbase {

/// Key of a record in a tag, exactly keyLength bytes.
void makeKey(const Tag& tag, const RecordView& record, std::span<char> key);

/// The key under which some engines file a negative number of a narrow column: its 16 bits read without a
/// sign. False for any other record.
[[nodiscard]] bool makeUnsignedKey(const Tag& tag, const RecordView& record, std::span<char> key);

} // namespace dbase
