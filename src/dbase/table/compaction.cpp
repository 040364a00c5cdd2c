// Copies the rows that are not deleted into the files that replace the table.
#include "dbase/table/compaction.h"

#include <vector>

#include "dbase/dbf/record_scan.h"
#include "dbase/table/bulk_loader.h"

namespace dbase {

Compaction compactTable(const std::string& tableFile, const Progress& progress) {
    BulkLoader loader(tableFile, BulkLoader::Mode::Replace); // from here on nobody else can open the table
    const TableFile old(openFile(tableFile, OpenMode::ReadOnly));
    Compaction result;
    std::vector<char> row;
    RecordScan scan(old);
    while (const RecordView* const record = scan.next()) {
        if (record->isDeleted()) {
            ++result.dropped;
            continue;
        }
        row.assign(record->bytes.begin(), record->bytes.end());
        row.front() = liveMark; // packing by another engine leaves another mark in the first one
        loader.add(row);
        ++result.kept;
    }
    if (result.dropped > 0) {
        loader.finish(progress);
    }
    return result;
}

} // namespace dbase
