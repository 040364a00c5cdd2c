#include "dbase/seek_key.h"

#include "dbase/codec.h"

namespace dbase {

namespace {

void writeInteger(std::span<char> raw, const Column& column, int value) {
    if (column.isNumber()) {
        if (!encodeInteger(raw, value, column.decimals)) {
            encodeBlank(raw);
        }
        return;
    }
    std::string digits = std::to_string(value);
    if (digits.size() < raw.size()) {
        digits.insert(0, raw.size() - digits.size(), '0');
    }
    encodeText(raw, digits);
}

void writeText(std::span<char> raw, const Column& column, const std::string& text) {
    if (column.isNumber()) {
        const std::optional<double> number = decodeNumber(text);
        if (!number || !encodeNumber(raw, *number, column.decimals)) {
            encodeBlank(raw);
        }
        return;
    }
    encodeText(raw, text);
}

} // namespace

SeekKey makeSeekKey(const Tag& tag, const Schema& schema, const Key& parts) {
    std::string record(schema.recordLength, ' ');
    std::vector<bool> given(schema.columns.size());
    for (const KeyPart& part : parts) {
        const std::optional<std::size_t> position = schema.find(part.field);
        if (!position) {
            continue;
        }
        const Column& column = schema.columns[*position];
        const std::span<char> raw(record.data() + column.offset, column.width);
        if (const int* value = std::get_if<int>(&part.value)) {
            writeInteger(raw, column, *value);
        } else {
            writeText(raw, column, std::get<std::string>(part.value));
        }
        given[*position] = true;
    }
    SeekKey key{std::string(tag.keyLength, ' '), tag.keyLength};
    makeKey(tag, {&schema, record, 0}, key.bytes);
    if (tag.keyType == KeyType::Character) {
        const std::size_t covered = tag.key->coveredWidth(given);
        if (covered > 0 && covered < key.covered) {
            key.covered = covered;
        }
    }
    return key;
}

} // namespace dbase
