// The rows with a key, looked up again and again.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "dbase/dbf/schema.h"
#include "dbase/mdx/tree_cursor.h"

namespace dbase {

class Dataset;
class Table;

/// Reads the rows that seek() and next() of a dataset would show for a key, without moving it and whatever
/// its range and filter; what the key is made of is worked out once.
class KeyedRows {
public:
    /// `rows`: an open dataset, which has to stay open; the tag that it has now counts. `fields`: the leading
    /// character columns of the tag. Errors: Error(BadState) without a tag, Error(NotFound).
    KeyedRows(const Dataset& rows, const std::vector<std::string_view>& fields);

    /// Announces a search that find() will be asked for soon, best in this order. Within a read scope all
    /// that are announced are made together by the next find(), so that their waits for memory overlap; what
    /// find() returns is the same.
    void expect(std::initializer_list<std::string_view> values);

    /// In the order of the tag, deleted ones left out; valid until the next call. `values`: one for each
    /// field, cut to its column. Errors: those of reading.
    [[nodiscard]] std::span<const RecordView> find(std::initializer_list<std::string_view> values);

private:
    /// Searches that are made together.
    struct Searches {
        std::size_t count = 0;
        std::string keys;              // one after the other
        std::vector<RecordView> rows;  // of the first key, then of the second…
        std::vector<std::size_t> ends; // of the rows of each; none before the searches are made
        std::vector<char> bytes;
    };

    void makeKey(std::initializer_list<std::string_view> values);
    void add(Searches& searches) const;
    [[nodiscard]] std::string_view keyOf(const Searches& searches, std::size_t search) const;
    [[nodiscard]] static std::span<const RecordView> rowsOf(const Searches& searches, std::size_t search);
    void make(Searches& searches);
    void gather(Searches& searches);
    void readRows(Searches& searches) const;
    void makeExpected();
    [[nodiscard]] std::optional<std::size_t> findExpected();

    Table& table_;
    const Tag& tag_;
    std::vector<const Column*> columns_;
    std::string record_; // blank but for the values
    std::string key_;
    std::size_t wanted_;              // of its bytes, as far as the fields reach
    std::vector<TreeCursor> cursors_; // of the searches that are being made
    std::vector<std::string_view> keys_;
    Searches single_, expected_;
    std::uint64_t expectedHold_ = 0; // of the read scope in which the expected ones were made
    std::size_t next_ = 0;           // of these, the one that is probably wanted next
};

} // namespace dbase
