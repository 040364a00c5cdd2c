// The rows that a dataset has read ahead; private to the dataset's sources.
#pragma once

#include <chrono>
#include <vector>

#include "dbase/dataset/dataset.h"

namespace dbase {

/// Rows after the current one, read under the same lock. Used only while the table's change counter proves
/// that none of our programs changed anything, and only briefly, because other programs do not update it.
struct Dataset::ReadAhead {
    static constexpr std::size_t mostRows = 64;
    static constexpr std::chrono::milliseconds shelfLife{20};

    struct Row {
        RecordNumber record;
        std::uint32_t slot;
        std::size_t offset; // of its bytes, then its key's
    };
    std::vector<Row> rows;
    std::size_t next = 0;
    std::vector<char> bytes;
    RecordNumber previous = 0; // the record that the next row follows
    std::uint64_t counter = 0;
    std::uint32_t recordCount = 0;
    std::chrono::nanoseconds taken{0};
    bool justStepped = false; // the last move was a step forward: the next one is worth reading ahead

    void clear() {
        rows.clear();
        bytes.clear();
        next = 0;
        justStepped = false;
    }
};

} // namespace dbase
