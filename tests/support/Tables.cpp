// Creates tables from rows written inline.
#include "support/Tables.h"

#include <algorithm>
#include <span>
#include <stdexcept>

#include "dbase/dbf/codec.h"
#include "dbase/dbf/codepage.h"
#include "dbase/system/databases.h"
#include "dbase/table/bulk_loader.h"

namespace ambrel::test {
namespace {

using dbase::Column;
using dbase::ColumnType;

/// "NOMBRE C53", "PRECIO N8.2", "ENT_MENOR L", "ALTA D"
Column parseColumn(const std::string& text) {
    const std::size_t blank = text.find(' ');
    if (blank == std::string::npos || blank + 1 == text.size()) {
        throw std::invalid_argument("no column: " + text);
    }
    Column column{.name = text.substr(0, blank), .type = static_cast<ColumnType>(text[blank + 1])};
    const std::string sizes = text.substr(blank + 2);
    if (column.type == ColumnType::Date) {
        column.width = 8;
    }
    if (sizes.empty()) {
        return column;
    }
    column.width = static_cast<std::uint16_t>(std::stoi(sizes));
    if (const std::size_t point = sizes.find('.'); point != std::string::npos) {
        column.decimals = static_cast<std::uint8_t>(std::stoi(sizes.substr(point + 1)));
    }
    return column;
}

dbase::TagDefinition parseTag(const std::string& text) {
    const std::size_t equals = text.find('=');
    if (equals == std::string::npos) {
        return {.name = text, .expression = text};
    }
    return {.name = text.substr(0, equals), .expression = text.substr(equals + 1)};
}

bool writeNumber(std::span<char> raw, const Column& column, const std::string& value) {
    return column.decimals == 0
               ? dbase::encodeInteger(raw, std::stoll(value))
               : dbase::encodeNumber(raw, dbase::decodeNumber(value).value(), column.decimals);
}

void writeValue(std::span<char> raw, const Column& column, const std::string& value) {
    bool fits = true;
    if (value.empty()) {
        dbase::encodeBlank(raw);
    } else if (column.isNumber()) {
        fits = writeNumber(raw, column, value);
    } else if (column.type == ColumnType::Logical) {
        dbase::encodeLogical(raw, value == "T");
    } else {
        dbase::encodeText(raw, ansi(value));
    }
    if (!fits || ansi(value).size() > column.width) {
        throw std::invalid_argument(column.name + " cannot hold " + value);
    }
}

std::vector<char> recordOf(const dbase::Schema& schema, const std::vector<std::string>& columns,
                           const Row& row) {
    if (row.size() != columns.size()) {
        throw std::invalid_argument("a row of " + std::to_string(row.size()) + " values");
    }
    std::vector<char> record(schema.recordLength, ' ');
    for (std::size_t i = 0; i < row.size(); ++i) {
        const auto position = schema.find(columns[i]);
        if (!position) {
            throw std::invalid_argument("no column " + columns[i]);
        }
        const Column& column = schema.columns[*position];
        writeValue(std::span(record).subspan(column.offset, column.width), column, row[i]);
    }
    return record;
}

} // namespace

dbase::TableDefinition defineTable(std::string name, const std::vector<std::string>& columns,
                                   const std::vector<std::string>& tags) {
    dbase::TableDefinition definition{.name = std::move(name), .columns = {}, .tags = {}};
    std::ranges::transform(columns, std::back_inserter(definition.columns), parseColumn);
    std::ranges::transform(tags, std::back_inserter(definition.tags), parseTag);
    return definition;
}

std::string createTable(const std::string& folder, const dbase::TableDefinition& definition,
                        const std::vector<std::string>& columns, const std::vector<Row>& rows) {
    dbase::createTable(folder, definition);
    const std::string file = dbase::findTableFile(folder, definition.name).value();
    dbase::BulkLoader loader(file, dbase::BulkLoader::Mode::Append);
    for (const Row& row : rows) {
        loader.add(recordOf(loader.schema(), columns, row));
    }
    loader.finish();
    return file;
}

std::string createTable(const std::string& folder, const dbase::TableDefinition& definition,
                        const std::vector<Row>& rows) {
    std::vector<std::string> columns;
    std::ranges::transform(definition.columns, std::back_inserter(columns), &Column::name);
    return createTable(folder, definition, columns, rows);
}

std::string ansi(const std::string& utf8) { return dbase::CodePage::windows1252().fromUtf8(utf8).value(); }

} // namespace ambrel::test
