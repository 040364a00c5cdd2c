// Decodes and encodes the header of a .DBF.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "dbase/dbf/schema.h"

namespace dbase {

/// The values in the fixed part of the header besides the layout.
struct HeaderCounts {
    std::uint32_t records = 0;                 // deleted ones included
    std::uint8_t year = 0, month = 0, day = 0; // year counted from 1900
};

/// Decodes a whole header (fixed part and column list, `headerLength` bytes or as many as the file has).
/// Errors: Error(BadTable), with `file` in its text, for a header that contradicts itself.
[[nodiscard]] Schema decodeHeader(std::span<const char> bytes, HeaderCounts& counts, const std::string& file);

/// Header length announced in the fixed part, in bytes. Needs 32 bytes. Errors as for decodeHeader.
[[nodiscard]] std::size_t announcedHeaderLength(std::span<const char> bytes, const std::string& file);

/// Sets offsets, record and header length from the columns. Errors: Error(BadTable) for a layout that the
/// format cannot hold (names, widths, 255 columns, 4000 bytes per record).
void completeLayout(Schema& schema, const std::string& file);

/// Encodes a header for a completed layout. `fieldTags` marks the columns that alone are the key of a tag.
[[nodiscard]] std::vector<char> encodeHeader(const Schema& schema, const HeaderCounts& counts,
                                             const std::vector<bool>& fieldTags = {});

} // namespace dbase
