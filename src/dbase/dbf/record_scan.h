// Reads all records of a table in file order, in large pieces.
#pragma once

#include <vector>

#include "dbase/dbf/table_file.h"

namespace dbase {

/// The first records of a file, perhaps with some that do not count yet: `marked`, the first of those, has
/// the end mark in the file in place of its own `mark`.
struct ScannedRecords {
    RecordNumber count;
    RecordNumber marked; // 0: none
    char mark;
};

/// For passes over a whole table: unlike the memory view, it does not make the table count as the program's
/// memory.
class RecordScan {
public:
    explicit RecordScan(const TableFile& records) : RecordScan(records, {records.recordCount(), 0, ' '}) {}
    RecordScan(const TableFile& records, const ScannedRecords& which) : records_(records), which_(which) {}

    /// The next record, or null after the last; valid until the next call.
    [[nodiscard]] const RecordView* next();

private:
    const TableFile& records_;
    ScannedRecords which_;
    RecordNumber read_ = 0; // so far
    std::size_t at_ = 0;    // offset of the next record in the piece
    std::vector<char> piece_;
    RecordView current_;
};

} // namespace dbase
