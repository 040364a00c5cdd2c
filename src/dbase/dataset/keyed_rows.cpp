// Looking rows up by their key.
#include "dbase/dataset/keyed_rows.h"

#include <cstring>

#include "dbase/dataset/dataset.h"
#include "dbase/dataset/seek_key.h"
#include "dbase/dbf/codec.h"
#include "dbase/mdx/record_key.h"
#include "dbase/system/error.h"
#include "dbase/system/quoted.h"
#include "dbase/table/table.h"

namespace dbase {

namespace {

/// Enough to hide the waits of one search behind the others, few enough to stay in the caches.
constexpr std::size_t mostExpected = 64;

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
    makeKey(values);
    if (const std::optional<std::size_t> search = findExpected()) {
        return rowsOf(expected_, *search);
    }
    single_.count = 0;
    add(single_);
    make(single_);
    return rowsOf(single_, 0);
}

void KeyedRows::expect(std::initializer_list<std::string_view> values) {
    if (!expected_.ends.empty()) { // these have been made: another lot begins
        expected_.count = 0;
        expected_.ends.clear();
    }
    if (expected_.count < mostExpected) {
        makeKey(values);
        add(expected_);
    }
}

/// The expected search for the key, made if need be; null if there is none, or its rows may have changed.
std::optional<std::size_t> KeyedRows::findExpected() {
    if (expected_.count == 0) {
        return std::nullopt;
    }
    if (expected_.ends.empty()) {
        makeExpected();
    } else {
        table_.giveWay();
    }
    if (expectedHold_ == 0 || expectedHold_ != table_.holdNumber()) {
        return std::nullopt;
    }
    const std::string_view wanted = std::string_view(key_).substr(0, wanted_);
    for (std::size_t tried = 0; tried < expected_.count; ++tried) {
        const std::size_t search = (next_ + tried) % expected_.count;
        if (keyOf(expected_, search) == wanted) {
            next_ = search;
            return search;
        }
    }
    return std::nullopt;
}

void KeyedRows::makeExpected() {
    next_ = 0;
    try {
        make(expected_);
    } catch (...) { // other searches may succeed
        expected_.count = 0;
        expected_.ends.clear();
        throw;
    }
    expectedHold_ = table_.holdNumber();
}

void KeyedRows::makeKey(std::initializer_list<std::string_view> values) {
    for (std::size_t i = 0; i < columns_.size(); ++i) {
        encodeText(std::span(record_).subspan(columns_[i]->offset, columns_[i]->width), values.begin()[i]);
    }
    dbase::makeKey(tag_, {&table_.schema(), record_, 0}, key_);
}

void KeyedRows::add(Searches& searches) const {
    searches.keys.replace(searches.count * wanted_, std::string::npos, key_, 0, wanted_);
    ++searches.count;
}

std::string_view KeyedRows::keyOf(const Searches& searches, std::size_t search) const {
    return std::string_view(searches.keys).substr(search * wanted_, wanted_);
}

std::span<const RecordView> KeyedRows::rowsOf(const Searches& searches, std::size_t search) {
    const std::size_t begin = search == 0 ? 0 : searches.ends[search - 1];
    return std::span(searches.rows).subspan(begin, searches.ends[search] - begin);
}

void KeyedRows::make(Searches& searches) {
    table_.read([&] { // perhaps more than once
        gather(searches);
        readRows(searches);
        return true;
    });
}

/// Finds the numbers of the rows.
void KeyedRows::gather(Searches& searches) {
    searches.rows.clear();
    searches.ends.clear();
    const TableFile& records = table_.records();
    const RecordNumber count = records.recordCount();
    cursors_.clear();
    keys_.clear();
    for (std::size_t search = 0; search < searches.count; ++search) {
        cursors_.emplace_back(*table_.index(), tag_);
        keys_.push_back(keyOf(searches, search));
    }
    TreeCursor::seekTogether(cursors_, keys_);
    for (std::size_t search = 0; search < searches.count; ++search) {
        TreeCursor& cursor = cursors_[search];
        for (bool on = cursor.isOnEntry(); on && tag_.order.compare(cursor.key(), keys_[search]) == 0;
             on = cursor.next()) {
            if (cursor.record() <= count) {
                records.prefetch(cursor.record()); // to wait for all of them together
                searches.rows.push_back({&table_.schema(), {}, cursor.record()});
            }
        }
        searches.ends.push_back(searches.rows.size());
    }
}

/// Copies the rows found, without those that are deleted.
void KeyedRows::readRows(Searches& searches) const {
    const std::size_t length = table_.schema().recordLength;
    searches.bytes.resize(searches.rows.size() * length);
    std::size_t found = 0, kept = 0;
    for (std::size_t& end : searches.ends) {
        for (; found < end; ++found) {
            const RecordView record = table_.records().record(searches.rows[found].number);
            if (!record.isDeleted()) {
                char* const bytes = searches.bytes.data() + kept * length;
                std::memcpy(bytes, record.bytes.data(), length);
                searches.rows[kept++] = {&table_.schema(), {bytes, length}, record.number};
            }
        }
        end = kept;
    }
    searches.rows.resize(kept);
}

} // namespace dbase
