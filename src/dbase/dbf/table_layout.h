// Offsets inside a .DBF: header, column descriptors, end.
#pragma once

#include <cstddef>
#include <cstdint>

namespace dbase {

/// The byte after the last record.
inline constexpr char endMark = 0x1A;

} // namespace dbase

namespace dbase::dbf {

// Fixed part of the header; the columns' descriptors follow it.
inline constexpr std::size_t version = 0;
inline constexpr std::size_t updated = 1; // year - 1900, month, day
inline constexpr std::size_t records = 4; // deleted ones included
inline constexpr std::size_t headerLength = 8;
inline constexpr std::size_t recordLength = 10;
inline constexpr std::size_t indexFlag = 28;
inline constexpr std::size_t languageDriver = 29;
inline constexpr std::size_t fixedSize = 32;

// Descriptor of a column.
inline constexpr std::size_t columnName = 0;
inline constexpr std::size_t columnNameSize = 11; // with its terminator
inline constexpr std::size_t columnType = 11;
inline constexpr std::size_t columnWidth = 16;
inline constexpr std::size_t columnDecimals = 17;
inline constexpr std::size_t columnTagFlag = 31;
inline constexpr std::size_t descriptorSize = 32;

inline constexpr char endOfColumns = 0x0D; // in place of another descriptor

} // namespace dbase::dbf
