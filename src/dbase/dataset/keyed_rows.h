// The rows with a key, looked up again and again.
#pragma once

#include <initializer_list>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "dbase/dbf/schema.h"

namespace dbase {

class Dataset;
class Table;
struct Tag;

/// Reads the rows that seek() and next() of a dataset would show for a key, without moving it and whatever
/// its range and filter; what the key is made of is worked out once.
class KeyedRows {
public:
    /// `rows`: an open dataset, which has to stay open; the tag that it has now counts. `fields`: the leading
    /// character columns of the tag. Errors: Error(BadState) without a tag, Error(NotFound).
    KeyedRows(const Dataset& rows, const std::vector<std::string_view>& fields);

    /// In the order of the tag, deleted ones left out; valid until the next call. `values`: one for each
    /// field, cut to its column. Errors: those of reading.
    [[nodiscard]] std::span<const RecordView> find(std::initializer_list<std::string_view> values);

private:
    void gather();

    Table& table_;
    const Tag& tag_;
    std::vector<const Column*> columns_;
    std::string record_; // blank but for the values
    std::string key_;
    std::size_t wanted_; // of its bytes, as far as the fields reach
    std::vector<RecordView> found_;
    std::vector<char> bytes_;
};

} // namespace dbase
