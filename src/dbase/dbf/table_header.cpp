// Decodes the header of a .DBF field by field with checks, and encodes it.
#include "dbase/dbf/table_header.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "dbase/dbf/table_layout.h"
#include "dbase/system/bytes.h"
#include "dbase/system/counted.h"
#include "dbase/system/error.h"
#include "dbase/system/names.h"
#include "dbase/system/quoted.h"

namespace dbase {

namespace {

constexpr std::size_t maxNameLength = dbf::columnNameSize - 1;
constexpr std::size_t maxColumns = 255;
constexpr std::size_t maxNewRecordLength = 4000;
constexpr std::uint16_t memoWidth = 10;
constexpr std::uint8_t productionIndexFlag = 0x01;

using Bytes = std::span<const char>;

[[noreturn]] void refuse(const std::string& file, const std::string& text) {
    throw Error(ErrorCode::BadTable, file, text);
}

std::uint8_t load8(Bytes bytes, std::size_t at) { return static_cast<std::uint8_t>(bytes[at]); }

std::string hex(unsigned value) {
    std::array<char, 16> text;
    std::snprintf(text.data(), text.size(), "0x%02X", value);
    return text.data();
}

/// A name for a message: characters that are not printable ASCII become question marks.
std::string shown(const std::string& name) {
    std::string text = name;
    for (char& c : text) {
        if (c < ' ' || c > '~') {
            c = '?';
        }
    }
    return text;
}

std::string decodeName(Bytes descriptor, std::size_t offset, const std::string& file) {
    std::string name;
    while (name.size() < dbf::columnNameSize && descriptor[dbf::columnName + name.size()] != 0) {
        name.push_back(upperLetter(descriptor[dbf::columnName + name.size()]));
    }
    const std::string place = "la columna descrita en la posición " + std::to_string(offset);
    if (name.size() > maxNameLength) {
        refuse(file, "el nombre de " + place + " no termina");
    }
    while (!name.empty() && name.back() == ' ') {
        name.pop_back();
    }
    if (name.empty()) {
        refuse(file, place + " no tiene nombre");
    }
    if (std::any_of(name.begin(), name.end(), [](char c) { return (c >= 0 && c <= ' ') || c == 0x7F; })) {
        refuse(file, "el nombre de " + place + " («" + shown(name) + "») tiene caracteres no válidos");
    }
    return name;
}

bool isKnownType(char type) { return std::string_view("CNFLDM").find(type) != std::string_view::npos; }

/// Decodes one descriptor; the caller sets the column's offset.
Column decodeColumn(Bytes descriptor, std::size_t offset, const std::string& file) {
    Column column;
    column.name = decodeName(descriptor, offset, file);
    const std::string title = "la columna " + shown(column.name);
    if (!isKnownType(descriptor[dbf::columnType])) {
        refuse(file, title + " es de un tipo desconocido (" + hex(load8(descriptor, dbf::columnType)) + ")");
    }
    column.type = static_cast<ColumnType>(descriptor[dbf::columnType]);
    column.width = load8(descriptor, dbf::columnWidth);
    if (column.width == 0) {
        refuse(file, title + " tiene anchura cero");
    }
    const std::uint16_t fixedWidth = column.type == ColumnType::Logical ? 1
                                     : column.type == ColumnType::Date  ? 8
                                     : column.type == ColumnType::Memo  ? memoWidth
                                                                        : column.width;
    if (column.width != fixedWidth) {
        refuse(file, title + " tiene anchura " + std::to_string(column.width) + " y su tipo exige " +
                         std::to_string(fixedWidth));
    }
    if (column.isNumber()) { // in character columns other programs use this byte for other things
        column.decimals = load8(descriptor, dbf::columnDecimals);
        if (column.decimals >= column.width) {
            refuse(file, title + " tiene anchura " + std::to_string(column.width) + " y " +
                             std::to_string(column.decimals) + " decimales, que no caben");
        }
    }
    return column;
}

void decodeColumns(Schema& schema, Bytes bytes, const std::string& file) {
    std::size_t offset = dbf::fixedSize;
    std::size_t recordLength = 1;
    for (;; offset += dbf::descriptorSize) {
        if (offset >= schema.headerLength) {
            refuse(file, "falta la marca de fin de la lista de columnas (0x0D)");
        }
        if (bytes[offset] == dbf::endOfColumns) {
            break;
        }
        if (offset + dbf::descriptorSize > schema.headerLength) {
            refuse(file, "la lista de columnas está cortada en la posición " + std::to_string(offset));
        }
        if (schema.columns.size() == maxColumns) {
            refuse(file, "hay más de 255 columnas");
        }
        Column column = decodeColumn(bytes.subspan(offset, dbf::descriptorSize), offset, file);
        if (schema.find(column.name)) {
            refuse(file, "la columna " + shown(column.name) + " está repetida");
        }
        if (recordLength + column.width > schema.recordLength) {
            refuse(file, "la columna " + shown(column.name) + " se sale del registro, que es de " +
                             std::to_string(schema.recordLength) + " bytes");
        }
        column.offset = static_cast<std::uint16_t>(recordLength);
        recordLength += column.width;
        schema.columns.push_back(std::move(column));
    }
    if (schema.columns.empty()) {
        refuse(file, "la tabla no tiene columnas");
    }
    if (recordLength != schema.recordLength) {
        refuse(file, "las columnas suman " + std::to_string(recordLength) +
                         " bytes y la cabecera dice que el registro es de " +
                         std::to_string(schema.recordLength));
    }
}

/// Checks the width of a new column.
void checkNewWidth(const Column& column, const std::string& file) {
    const std::string title = "la columna " + shown(column.name);
    int smallest = 1, largest = 1;
    switch (column.type) {
    case ColumnType::Character:
        largest = 254;
        break;
    case ColumnType::Numeric:
    case ColumnType::Float:
        largest = 20;
        if (column.decimals > 0) {
            smallest = column.decimals + 2; // a digit and the point precede them
        }
        break;
    case ColumnType::Logical:
        break;
    case ColumnType::Date:
        smallest = largest = 8;
        break;
    case ColumnType::Memo:
        refuse(file, title + " es un memo, y las tablas nuevas no los admiten");
    default:
        refuse(file, title + " es de un tipo desconocido");
    }
    if (column.width < smallest || column.width > largest) {
        refuse(file, title + " tiene anchura " + std::to_string(column.width) + "; debe estar entre " +
                         std::to_string(smallest) + " y " + std::to_string(largest));
    }
}

void checkNewName(const std::string& name, const std::string& file) {
    const auto isLetter = [](char c) { return c >= 'A' && c <= 'Z'; };
    const auto isAllowed = [&](char c) { return isLetter(c) || (c >= '0' && c <= '9') || c == '_'; };
    if (name.empty() || name.size() > maxNameLength || !isLetter(name.front()) ||
        !std::all_of(name.begin(), name.end(), isAllowed)) {
        refuse(file, "el nombre de columna " + inQuotes(name) +
                         " no vale: hasta 10 letras A-Z, cifras o «_», con una letra al principio");
    }
}

} // namespace

std::size_t announcedHeaderLength(std::span<const char> bytes, const std::string& file) {
    if (bytes.size() < dbf::fixedSize) {
        refuse(file, "la cabecera está cortada: hay " + counted(bytes.size(), "byte", "bytes") + " de 32");
    }
    constexpr std::array<std::uint8_t, 4> known{0x03, 0x05, 0x83, 0x8B};
    const std::uint8_t version = load8(bytes, dbf::version);
    if (std::find(known.begin(), known.end(), version) == known.end()) {
        refuse(file, "no es una tabla dBase III a 5 (versión " + hex(version) + ")");
    }
    const std::uint16_t length = load16(bytes.data() + dbf::headerLength);
    if (length < dbf::fixedSize + dbf::descriptorSize + 1) {
        refuse(file, "la cabecera dice que mide " + std::to_string(length) +
                         " bytes, menos de lo que ocupa una columna");
    }
    return length;
}

Schema decodeHeader(std::span<const char> bytes, HeaderCounts& counts, const std::string& file) {
    const std::size_t length = announcedHeaderLength(bytes, file);
    if (bytes.size() < length) {
        refuse(file, "la cabecera está cortada: anuncia " + std::to_string(length) + " bytes y hay " +
                         std::to_string(bytes.size()));
    }
    Schema schema;
    schema.version = load8(bytes, dbf::version);
    schema.languageDriver = load8(bytes, dbf::languageDriver);
    schema.hasProductionIndex = (load8(bytes, dbf::indexFlag) & productionIndexFlag) != 0;
    schema.headerLength = static_cast<std::uint16_t>(length);
    schema.recordLength = load16(bytes.data() + dbf::recordLength);
    decodeColumns(schema, bytes.first(length), file);

    counts.records = load32(bytes.data() + dbf::records);
    counts.year = load8(bytes, dbf::updated);
    counts.month = load8(bytes, dbf::updated + 1);
    counts.day = load8(bytes, dbf::updated + 2);
    return schema;
}

void completeLayout(Schema& schema, const std::string& file) {
    if (schema.columns.empty()) {
        refuse(file, "la tabla no tiene columnas");
    }
    if (schema.columns.size() > maxColumns) {
        refuse(file, "hay más de 255 columnas");
    }
    std::size_t recordLength = 1;
    for (std::size_t i = 0; i < schema.columns.size(); ++i) {
        Column& column = schema.columns[i];
        checkNewName(column.name, file);
        checkNewWidth(column, file);
        if (schema.find(column.name) != i) {
            refuse(file, "la columna " + column.name + " está repetida");
        }
        if (!column.isNumber()) {
            column.decimals = 0;
        }
        column.offset = static_cast<std::uint16_t>(recordLength);
        recordLength += column.width;
        if (recordLength > maxNewRecordLength) {
            refuse(file, "con la columna " + column.name + " el registro pasa de 4000 bytes");
        }
    }
    schema.recordLength = static_cast<std::uint16_t>(recordLength);
    schema.headerLength =
        static_cast<std::uint16_t>(dbf::fixedSize + dbf::descriptorSize * schema.columns.size() + 1);
}

std::vector<char> encodeHeader(const Schema& schema, const HeaderCounts& counts,
                               const std::vector<bool>& fieldTags) {
    std::vector<char> bytes(schema.headerLength);
    const auto put = [&](std::size_t at, std::uint8_t value) { bytes[at] = static_cast<char>(value); };
    put(dbf::version, schema.version);
    put(dbf::updated, counts.year);
    put(dbf::updated + 1, counts.month);
    put(dbf::updated + 2, counts.day);
    store32(bytes.data() + dbf::records, counts.records);
    store16(bytes.data() + dbf::headerLength, schema.headerLength);
    store16(bytes.data() + dbf::recordLength, schema.recordLength);
    put(dbf::indexFlag, schema.hasProductionIndex ? productionIndexFlag : 0);
    put(dbf::languageDriver, schema.languageDriver);
    std::size_t offset = dbf::fixedSize;
    for (std::size_t i = 0; i < schema.columns.size(); ++i, offset += dbf::descriptorSize) {
        const Column& column = schema.columns[i];
        std::copy_n(column.name.begin(), std::min(column.name.size(), maxNameLength),
                    bytes.begin() + static_cast<std::ptrdiff_t>(offset + dbf::columnName));
        bytes[offset + dbf::columnType] = static_cast<char>(column.type);
        put(offset + dbf::columnWidth, static_cast<std::uint8_t>(column.width));
        put(offset + dbf::columnDecimals, column.decimals);
        put(offset + dbf::columnTagFlag, i < fieldTags.size() && fieldTags[i] ? 1 : 0);
    }
    bytes[offset] = dbf::endOfColumns;
    return bytes;
}

} // namespace dbase
