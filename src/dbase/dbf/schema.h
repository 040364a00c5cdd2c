// The layout of a table as plain values: columns, sizes, language driver.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "AmbrelExport.h"

namespace dbase {

/// 1-based number of a record in its file; 0 means none.
using RecordNumber = std::uint32_t;

/// Column types, by their letters in the header.
enum class ColumnType : char {
    Character = 'C',
    Numeric = 'N',
    Float = 'F',
    Logical = 'L',
    Date = 'D',
    Memo = 'M'
};

/// Language driver byte of a table: code page and key order.
enum class LanguageDriver : std::uint8_t {
    None = 0x00,
    WindowsAnsi = 0x03,
    AnsiUs = 0x57,         // Windows-1252, keys in byte order; used for new tables
    AnsiWestEurope = 0x58, // Windows-1252, keys by weight
    AnsiSpanish = 0x59,    // Windows-1252, keys by weight
};

/// A column as described in the header.
struct Column {
    std::string name; // upper case, at most 10 characters
    ColumnType type = ColumnType::Character;
    std::uint16_t width = 1; // bytes in the record
    std::uint8_t decimals = 0;
    std::uint16_t offset = 0; // of the first byte in the record; byte 0 is the deletion mark

    /// Whether its bytes are decimal digits.
    [[nodiscard]] bool isNumber() const { return type == ColumnType::Numeric || type == ColumnType::Float; }
};

/// Layout of a table. Value type; columns are in file order.
struct AMBREL_EXPORT Schema {
    std::vector<Column> columns;
    std::uint8_t version = 0x03;
    std::uint8_t languageDriver = static_cast<std::uint8_t>(LanguageDriver::AnsiUs);
    bool hasProductionIndex = false;
    std::uint16_t headerLength = 0; // bytes; offset of record 1
    std::uint16_t recordLength = 0; // bytes, deletion mark included

    /// Position of a column by name, letter case ignored.
    [[nodiscard]] std::optional<std::size_t> find(std::string_view name) const;
};

/// The first byte of a record.
inline constexpr char liveMark = ' ';
inline constexpr char deletedMark = '*';

/// One record as stored in the file: deletion mark, then the columns without separators.
struct RecordView {
    const Schema* schema = nullptr;
    std::span<const char> bytes; // recordLength bytes
    RecordNumber number = 0;

    [[nodiscard]] bool isDeleted() const { return bytes[0] == deletedMark; }
    [[nodiscard]] std::string_view raw(const Column& column) const {
        return {bytes.data() + column.offset, column.width};
    }
};

} // namespace dbase
