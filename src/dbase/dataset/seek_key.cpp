// Builds search keys: the key of a blank record with the given values.
#include "dbase/dataset/seek_key.h"

#include "dbase/dbf/codec.h"
#include "dbase/mdx/record_key.h"
#include "dbase/system/error.h"

namespace dbase {

namespace {

bool writeInteger(std::span<char> raw, const Column& column, int value) {
    if (column.isNumber()) {
        return encodeInteger(raw, value, column.decimals);
    }
    std::string digits = std::to_string(value);
    if (digits.size() > raw.size()) {
        return false; // a text may be cut, but a number would become another one
    }
    if (digits.size() < raw.size()) {
        digits.insert(value < 0 ? 1 : 0, raw.size() - digits.size(), '0');
    }
    encodeText(raw, digits);
    return true;
}

bool writeText(std::span<char> raw, const Column& column, const std::string& text) {
    if (column.type != ColumnType::Character && decodeText(text).empty()) {
        return true; // already blank
    }
    if (column.isNumber()) {
        const std::optional<double> number = decodeNumber(text);
        return number && encodeNumber(raw, *number, column.decimals);
    }
    encodeText(raw, text);
    return column.type != ColumnType::Date || decodeDate({raw.data(), raw.size()});
}

bool writePart(std::span<char> raw, const Column& column, const KeyPart& part) {
    const int* value = std::get_if<int>(&part.value);
    return value != nullptr ? writeInteger(raw, column, *value)
                            : writeText(raw, column, std::get<std::string>(part.value));
}

/// True if the key depends on a given column on which the covered part does not depend.
bool dependsOnMore(const Expression& key, std::vector<bool> given, std::size_t covered) {
    for (std::size_t i = 0; i < given.size(); ++i) {
        if (!given[i]) {
            continue;
        }
        std::vector<bool> others(given.size(), true);
        others[i] = false;
        given[i] = false;
        const bool leads = key.coveredWidth(given) < covered;
        given[i] = true;
        if (!leads && key.coveredWidth(others) < key.width()) {
            return true;
        }
    }
    return false;
}

} // namespace

std::string makeSeekKey(const Tag& tag, const Schema& schema, const Key& parts) {
    std::string record(schema.recordLength, ' ');
    std::vector<bool> given(schema.columns.size());
    for (const KeyPart& part : parts) {
        const std::optional<std::size_t> position = schema.find(part.field);
        if (!position) {
            continue;
        }
        const Column& column = schema.columns[*position];
        if (!writePart(std::span(record).subspan(column.offset, column.width), column, part)) {
            throw Error(ErrorCode::BadValue, {}, "el valor buscado no cabe en el campo " + column.name);
        }
        given[*position] = true;
    }
    std::string key(tag.keyLength, ' ');
    makeKey(tag, {&schema, record, 0}, key);
    if (tag.keyType == KeyType::Character) {
        const std::size_t covered = tag.key->coveredWidth(given);
        if (covered > 0 && covered < key.size() && !dependsOnMore(*tag.key, given, covered)) {
            key.resize(covered);
        }
    }
    return key;
}

} // namespace dbase
