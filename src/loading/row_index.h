// Finds rows of a table by the values of some columns, whatever tags it has.
#pragma once

#include <cstdint>
#include <unordered_map>
#include <vector>

#include "dbase/table/table.h"

namespace loading {

/// Reads the whole table once, in slices between which other stations can work; what they change afterwards
/// is not noticed.
class RowIndex {
public:
    /// `columns`: positions; empty: all of them, the whole row.
    RowIndex(dbase::Table& table, std::vector<std::size_t> columns);

    /// Live records that have, or had when the table was read, the same values as a row; the caller reads
    /// and compares them again.
    [[nodiscard]] std::vector<dbase::RecordNumber> find(std::span<const char> row) const;
    /// Adds what a record holds now.
    void put(dbase::RecordNumber number, std::span<const char> row);

private:
    [[nodiscard]] std::uint64_t hash(std::span<const char> row) const;

    const dbase::Schema& schema_;
    std::vector<std::size_t> columns_;
    std::unordered_multimap<std::uint64_t, dbase::RecordNumber> rows_;
};

} // namespace loading
