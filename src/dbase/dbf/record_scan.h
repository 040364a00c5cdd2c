// All records of a table in the order of the file, read in large pieces.
#pragma once

#include <vector>

#include "dbase/dbf/table_file.h"

namespace dbase {

/// For passes over a whole table: unlike the memory view it does not count the table into the program's
/// memory.
class RecordScan {
public:
    explicit RecordScan(const TableFile& records);

    /// The next record, or null behind the last; valid until the next call.
    [[nodiscard]] const RecordView* next();

private:
    const TableFile& records_;
    RecordNumber count_, read_ = 0; // records in the file, and read so far
    std::size_t at_ = 0;            // of the next record in the piece
    std::vector<char> piece_;
    RecordView current_;
};

} // namespace dbase
