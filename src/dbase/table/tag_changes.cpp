// Applies a change of a record to each tag.
#include "dbase/table/tag_changes.h"

#include <array>

#include "dbase/mdx/record_key.h"
#include "dbase/mdx/tree_cursor.h"
#include "dbase/mdx/tree_editor.h"
#include "dbase/system/error.h"

namespace dbase {

namespace {

using KeyBytes = std::array<char, maxKeyLength>;

std::string_view keyOf(const Tag& tag, const RecordView& record, KeyBytes& buffer) {
    makeKey(tag, record, std::span(buffer).first(tag.keyLength));
    return {buffer.data(), tag.keyLength};
}

bool belongs(const Tag& tag, const RecordView& record) {
    return !tag.condition || tag.condition->test(record);
}

} // namespace

TagChanges::~TagChanges() {
    if (index_ != nullptr) {
        index_->dropChanges();
    }
}

void TagChanges::insert(const Tag& tag, const RecordView& record) {
    if (!belongs(tag, record)) {
        return;
    }
    KeyBytes buffer;
    const std::string_view key = keyOf(tag, record, buffer);
    TreeEditor tree(*index_, tag);
    if (tag.definition.unique) { // only the first record with a key has an entry
        TreeCursor cursor(*index_, tag);
        if (cursor.seek(key) && tag.order.compare(cursor.key(), key) == 0) {
            const std::string held(cursor.key());
            if (cursor.record() <= record.number || !tree.remove(held, cursor.record())) {
                return;
            }
        }
    }
    tree.insert(key, record.number);
}

// Inserts the first other record with a key that no longer has an entry in a unique tag.
void TagChanges::insertSuccessor(const Tag& tag, std::string_view key, RecordNumber leaving) {
    const RecordNumber count = records_.recordCount();
    KeyBytes buffer;
    for (RecordNumber number = 1; number <= count; ++number) {
        const RecordView record = records_.record(number);
        if (number != leaving && belongs(tag, record) &&
            tag.order.compare(keyOf(tag, record, buffer), key) == 0) {
            TreeEditor(*index_, tag).insert(key, number);
            return;
        }
    }
}

void TagChanges::remove(const Tag& tag, const RecordView& record) {
    if (!belongs(tag, record)) {
        return;
    }
    KeyBytes buffer, foreign;
    const std::string_view key = keyOf(tag, record, buffer);
    TreeEditor tree(*index_, tag);
    bool removed = tree.remove(key, record.number);
    if (!removed && makeUnsignedKey(tag, record, std::span(foreign).first(tag.keyLength))) {
        removed = tree.remove({foreign.data(), tag.keyLength}, record.number);
    }
    if (removed && tag.definition.unique) {
        insertSuccessor(tag, key, record.number);
    }
    if (!removed && tag.holdsAllRecords()) {
        throw Error(ErrorCode::BadIndex, index_->path(),
                    "el registro " + std::to_string(record.number) + " no está en el tag " +
                        tag.definition.name + "; ejecute \"ambcp reindexar\"");
    }
}

void TagChanges::add(const RecordView& record) {
    if (index_ != nullptr) {
        for (const Tag& tag : index_->tags()) {
            insert(tag, record);
        }
    }
}

void TagChanges::replace(const RecordView& before, const RecordView& after) {
    if (index_ == nullptr) {
        return;
    }
    for (const Tag& tag : index_->tags()) {
        const bool was = belongs(tag, before);
        const bool is = belongs(tag, after);
        KeyBytes oldBuffer, newBuffer;
        if (was == is && (!was || keyOf(tag, before, oldBuffer) == keyOf(tag, after, newBuffer))) {
            continue;
        }
        remove(tag, before);
        insert(tag, after);
    }
}

} // namespace dbase
