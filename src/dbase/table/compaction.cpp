// Copies the rows that are not deleted into the files that replace the table.
#include "dbase/table/compaction.h"

#include <vector>

#include "dbase/dbf/record_scan.h"
#include "dbase/journal/journal_place.h"
#include "dbase/system/error.h"
#include "dbase/system/folders.h"
#include "dbase/table/bulk_loader.h"

namespace dbase {

namespace {

/// Another program may have died in the middle of a change just before the claim, and a replacement goes on
/// where that cannot be recovered. Here the rows stay, so that none of the journal may be missing.
void requireRecovered(const std::string& tableFile, Folders& folders) {
    if (journalBeside(folders.realPath(tableFile), folders)->openExisting()) {
        throw Error(
            ErrorCode::BadTable, tableFile,
            "los cambios de su diario no se han podido recuperar; hágalo primero \"ambcp reindexar\"");
    }
}

} // namespace

Compaction compactTable(const std::string& tableFile, const Progress& progress) {
    return compactTable(tableFile, diskFolders(), progress);
}

Compaction compactTable(const std::string& tableFile, Folders& folders, const Progress& progress) {
    // From here on nobody else can open the table.
    BulkLoader loader(tableFile, BulkLoader::Mode::Replace, folders);
    requireRecovered(tableFile, folders);
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
