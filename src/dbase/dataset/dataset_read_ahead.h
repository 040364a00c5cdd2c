// The rows that a dataset has read ahead; private to the dataset's sources.
#pragma once

#include <algorithm>
#include <chrono>
#include <vector>

#include "dbase/dataset/dataset.h"
#include "dbase/mdx/tree_cursor.h"

namespace dbase {

/// Rows after the current one, read under the same lock: those of its leaf and, while steps use up all that
/// was read, of more leaves each time. Used only while the table's change counter proves that none of our
/// programs changed anything, and only briefly, because other programs do not update it.
struct Dataset::ReadAhead {
    static constexpr std::size_t mostRows = 64, mostLeaves = 8;
    /// How many records are fetched from memory at once: about as many as the processor can wait for.
    static constexpr std::size_t fetched = 8;
    static constexpr std::chrono::milliseconds shelfLife{20};

    struct Row {
        RecordNumber record;
        std::uint32_t slot;
        std::uint32_t leaf; // 0: that of the cursor when the rows were read, n: that of later[n - 1]
        std::size_t offset; // of its bytes, then its key's
    };
    std::vector<Row> rows;
    std::size_t next = 0;
    std::vector<char> bytes;
    std::vector<TreeCursor> later; // on the first entry of each further leaf
    std::uint32_t leaf = 0;        // of the row last used
    std::size_t leaves = 1;        // of which these rows were read
    RecordNumber previous = 0;     // the record that the next row follows
    std::uint64_t counter = 0;
    std::uint32_t recordCount = 0;
    std::chrono::nanoseconds taken{0};
    bool justStepped = false; // the last move was a step forward: the next one is worth reading ahead

    /// How many leaves are worth reading now.
    [[nodiscard]] std::size_t leavesNext() const {
        return next != 0 && next == rows.size() ? std::min(2 * leaves, mostLeaves) : 1;
    }
    void clear() {
        rows.clear();
        later.clear();
        leaf = 0;
        leaves = 1;
        next = 0;
        justStepped = false;
    }
};

} // namespace dbase
