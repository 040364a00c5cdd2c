// The rows around a dataset's current one, from which a window of a table is made.
#pragma once

#include <cstddef>
#include <vector>

#include "dbase/dbf/schema.h"

namespace dbase {

/// How far to look from the current row.
struct WindowSize {
    std::size_t before = 0, after = 0; // rows
    /// Maximum of hidden rows (filtered out or deleted) to pass over each way, so that looking at the
    /// neighbours does not scan the whole table under a filter that hides nearly everything.
    std::size_t mostHidden = 20'000;
};

/// A snapshot of rows. Empty on an empty table.
struct RowsAround {
    /// One of the rows.
    struct Row {
        RecordNumber record = 0; // 0: a pending new row, placed after the row that was current
        double place = 0; // share of the order, or of the range, that lies before it (0 to 1); estimated
    };
    std::vector<Row> rows; // in their order
    std::size_t current = 0;
    /// The search gave up before it had enough rows, so there may be more. Otherwise fewer rows than
    /// requested mean that there are no more.
    bool isCutBefore = false, isCutAfter = false;
    std::vector<char> bytes; // of the rows, one after the other
};

} // namespace dbase
