// The rows around a dataset's current one: what a window of a table is made of.
#pragma once

#include <cstddef>
#include <vector>

#include "dbase/dbf/schema.h"

namespace dbase {

/// How far to look from the current row.
struct WindowSize {
    std::size_t before = 0, after = 0; // rows
    /// Rows that are hidden (by the filter, or deleted) and may be passed over each way, so that a filter
    /// that hides nearly everything does not make a look at the neighbours a scan of the table.
    std::size_t mostHidden = 20'000;
};

/// A picture of rows as they were when it was taken. On an empty table it holds no rows.
struct RowsAround {
    /// One of them.
    struct Row {
        RecordNumber record = 0; // 0: a pending new row; it stands behind the row that was current
        double place = 0; // share of the order, or of the range, that lies before it (0 to 1); estimated
    };
    std::vector<Row> rows; // in their order
    std::size_t current = 0;
    /// It gave up before it had enough rows: there may be more. Without this, fewer rows than asked for means
    /// that there are no more.
    bool isCutBefore = false, isCutAfter = false;
    std::vector<char> bytes; // of the rows, one behind the other
};

} // namespace dbase
