// Rows of a table that are looked at one after another.
#pragma once

#include <span>
#include <vector>

#include "directory/StoredRows.h"

namespace ambrel::directory {

/// Reads many rows at a time, for a caller who asks for most of them in the order of their records. Others
/// may change the table meanwhile: what it has are rows of a moment ago.
class RowsInOrder {
public:
    /// `table` must outlive this object.
    explicit RowsInOrder(const StoredRows& table);

    /// Valid until the next call. Empty for a deleted row, and for one out of order, which StoredRows::row()
    /// has.
    [[nodiscard]] std::span<const char> find(dbase::RecordNumber number);

private:
    const StoredRows& table_;
    std::vector<char> bytes_;
    dbase::RecordNumber first_ = 1, count_ = 0; // of the rows read
    int outOfOrder_ = 0;                        // asked for since the last one that was found
};

} // namespace ambrel::directory
