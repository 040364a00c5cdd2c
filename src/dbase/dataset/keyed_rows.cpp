// Looking rows up by their key.
#include "dbase/dataset/keyed_rows.h"

#include <cstring>

#include "dbase/dataset/dataset.h"
#include "dbase/dataset/seek_key.h"
#include "dbase/dbf/codec.h"
#include "dbase/mdx/record_key.h"
#include "dbase/mdx/tree_cursor.h"
#include "dbase/system/error.h"
#include "dbase/system/quoted.h"
#include "dbase/table/table.h"

namespace dbase {

namespace {

const Tag& tagOf(const Dataset& rows) {
    const Table& table = rows.openTable();
    const Tag* tag = table.findTag(rows.tag());
    if (tag == nullptr || !tag->isUnderstood()) {
        throw Error(ErrorCode::BadState, table.path(),
                    tag == nullptr ? "las búsquedas necesitan un tag" : tag->problem);
    }
    return *tag;
}

} // namespace

KeyedRows::KeyedRows(const Dataset& rows, const std::vector<std::string_view>& fields)
    : table_(rows.openTable()), tag_(tagOf(rows)), record_(rows.schema().recordLength, ' '),
      key_(tag_.keyLength, ' ') {
    Key blank;
    for (const std::string_view field : fields) {
        const std::optional<std::size_t> position = rows.schema().find(field);
        if (!position) {
            throw Error(ErrorCode::NotFound, table_.path(),
                        "no hay ningún campo " + inQuotes(std::string(field)));
        }
        columns_.push_back(&rows.schema().columns[*position]);
        blank.push_back({field, std::string()});
    }
    wanted_ = makeSeekKey(tag_, rows.schema(), blank).size();
}

std::span<const RecordView> KeyedRows::find(std::initializer_list<std::string_view> values) {
    for (std::size_t i = 0; i < columns_.size(); ++i) {
        encodeText(std::span(record_).subspan(columns_[i]->offset, columns_[i]->width), values.begin()[i]);
    }
    makeKey(tag_, {&table_.schema(), record_, 0}, key_);
    return table_.read([this] {
        gather();
        return std::span<const RecordView>(found_);
    });
}

/// Called inside Table::read(), perhaps more than once.
void KeyedRows::gather() {
    found_.clear();
    const TableFile& records = table_.records();
    const RecordNumber count = records.recordCount();
    const std::string_view wanted = std::string_view(key_).substr(0, wanted_);
    TreeCursor cursor(*table_.index(), tag_);
    for (bool on = cursor.seek(wanted); on && tag_.order.compare(cursor.key(), wanted) == 0;
         on = cursor.next()) {
        if (cursor.record() <= count) {
            records.prefetch(cursor.record()); // to wait for all of them together
            found_.push_back({&table_.schema(), {}, cursor.record()});
        }
    }
    const std::size_t length = table_.schema().recordLength;
    bytes_.resize(found_.size() * length);
    std::size_t kept = 0;
    for (const RecordView& row : found_) {
        const RecordView record = records.record(row.number);
        if (!record.isDeleted()) {
            char* const bytes = bytes_.data() + kept * length;
            std::memcpy(bytes, record.bytes.data(), length);
            found_[kept++] = {&table_.schema(), {bytes, length}, row.number};
        }
    }
    found_.resize(kept);
}

} // namespace dbase
