// The small types that datasets and their users exchange.
#pragma once

#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "dbase/dbf/schema.h"

namespace dbase {

/// Closed, showing records, or with a pending row that is new or a record's.
enum class DatasetState { Closed, Browse, Insert, Edit };
/// Where a search ends for a key that is not there: nowhere, or behind it.
enum class SeekMode { Exact, Nearest };

/// One (field name, value) pair of a search key.
struct KeyPart {
    std::string_view field;
    std::variant<std::string, int> value;
};
/// Some or all fields of a tag, its first ones.
using Key = std::vector<KeyPart>;

/// What listeners are told, synchronously.
enum class DatasetChange {
    Opened,
    Closed,
    Moved, // another record is current, or the current one was read again
    Field, // a value of the current record was set
    State, // browse, insert, edit
    Order, // tag, range, filter, or rows came and went: everything shown may be different
};

/// Remembers a record of one table; a default one remembers nothing.
class Bookmark {
public:
    Bookmark() = default;
    /// 0 remembers nothing, too.
    explicit Bookmark(RecordNumber record) : record_(record) {}
    [[nodiscard]] RecordNumber record() const { return record_; }
    [[nodiscard]] explicit operator bool() const { return record_ != 0; }

private:
    RecordNumber record_ = 0;
};

} // namespace dbase
