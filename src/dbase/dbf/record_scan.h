// Reads all records of a table in file order, in large pieces.
#pragma once

#include <vector>

#include "dbase/dbf/table_file.h"

namespace dbase {

/// For passes over a whole table: unlike the memory view, it does not make the table count as the program's
/// memory.
class RecordScan {
public:
    explicit RecordScan(const TableFile& records);

    /// The next record, or null after the last; valid until the next call.
    [[nodiscard]] const RecordView* next();

private:
    const TableFile& records_;
    RecordNumber count_, read_ = 0; // records in the file, and those read so far
    std::size_t at_ = 0;            // offset of the next record in the piece
    std::vector<char> piece_;
    RecordView current_;
};

} // namespace dbase
