// The header of a .DBF: from its bytes to plain values and back.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "dbase/dbf/schema.h"

namespace dbase {

/// What the fixed part of the header says beside the layout.
struct HeaderCounts {
    std::uint32_t records = 0;                 // deleted ones included
    std::uint8_t year = 0, month = 0, day = 0; // year counted from 1900
};

/// Decodes a whole header (fixed part and column list, `headerLength` bytes or as many as the file has).
/// Errors: Error(BadTable) with `file` in its text for anything that contradicts itself.
[[nodiscard]] Schema decodeHeader(std::span<const char> bytes, HeaderCounts& counts, const std::string& file);

/// Header length that the fixed part announces, in bytes. Needs 32 bytes. Errors as decodeHeader.
[[nodiscard]] std::size_t announcedHeaderLength(std::span<const char> bytes, const std::string& file);

/// Sets offsets, record and header length from the columns. Errors: Error(BadTable) for a layout the format
/// cannot hold (names, widths, 255 columns, 4000 bytes a record).
void completeLayout(Schema& schema, const std::string& file);

/// Encodes a header for a completed layout. `fieldTags` marks the columns that are by themselves the key of a
/// tag.
[[nodiscard]] std::vector<char> encodeHeader(const Schema& schema, const HeaderCounts& counts,
                                             const std::vector<bool>& fieldTags = {});

} // namespace dbase
