// The small types that datasets and their users exchange.
#pragma once

#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "dbase/dbf/schema.h"

namespace dbase {

/// Closed, showing records, or with a pending row: a new one or a changed record.
enum class DatasetState { Closed, Browse, Insert, Edit };
/// Where a search for a missing key ends: nowhere, or after it.
enum class SeekMode { Exact, Nearest };

/// One (field name, value) pair of a search key.
struct KeyPart {
    std::string_view field;
    std::variant<std::string, int> value;
};
/// All fields of a tag, or its first ones.
using Key = std::vector<KeyPart>;

/// The changes reported to listeners, synchronously.
enum class DatasetChange {
    Opened,
    Closed,
    Moved, // another record is current, or the current one was read again
    Field, // a value of the current record was set
    State, // browse, insert, edit
    Order, // tag, range or filter changed, or rows came and went: everything shown may differ
};

/// Remembers a record of one table; a default-constructed one remembers none.
class Bookmark {
public:
    Bookmark() = default;
    /// 0 stands for no record.
    explicit Bookmark(RecordNumber record) : record_(record) {}
    [[nodiscard]] RecordNumber record() const { return record_; }
    [[nodiscard]] explicit operator bool() const { return record_ != 0; }

private:
    RecordNumber record_ = 0;
};

} // namespace dbase
