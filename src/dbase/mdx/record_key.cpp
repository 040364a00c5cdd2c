// Builds the keys of records: copied from their columns, or evaluated.
#include "dbase/mdx/record_key.h"

#include <algorithm>
#include <cstring>

namespace dbase {

void makeKey(const Tag& tag, const RecordView& record, std::span<char> key) {
    const std::vector<KeySegment>& segments = tag.key->segments();
    if (tag.keyType != KeyType::Character || segments.empty()) {
        encodeKey(tag.key->evaluate(record), tag.keyType, key);
        return;
    }
    std::size_t at = 0;
    for (const KeySegment& segment : segments) {
        const std::size_t part = std::min<std::size_t>(segment.width, key.size() - at);
        std::memcpy(key.data() + at, record.bytes.data() + segment.offset, part);
        at += part;
    }
    std::memset(key.data() + at, ' ', key.size() - at);
}

bool makeUnsignedKey(const Tag& tag, const RecordView& record, std::span<char> key) {
    constexpr double signless = 65536, lowest = -32768;
    if (tag.keyType != KeyType::Numeric) {
        return false;
    }
    Value value = tag.key->evaluate(record);
    if (!value.hasValue || value.number >= 0 || value.number < lowest) {
        return false;
    }
    value.number += signless;
    encodeKey(value, tag.keyType, key);
    return true;
}

} // namespace dbase
