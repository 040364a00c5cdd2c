// Copies the rows that are not deleted into the files that replace the table.
#include "dbase/table/compaction.h"

#include <vector>

#include "dbase/dbf/record_scan.h"
#include "dbase/system/folders.h"
#include "dbase/table/bulk_loader.h"

namespace dbase {

Compaction compactTable(const std::string& tableFile, const Progress& progress) {
    return compactTable(tableFile, diskFolders(), progress);
}

Compaction compactTable(const std::string& tableFile, Folders& folders, const Progress& progress) {
    // From here on nobody else can open the table.
    BulkLoader loader(tableFile, BulkLoader::Mode::Replace, folders);
    const TableFile old(folders.open(tableFile, OpenMode::ReadOnly));
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
