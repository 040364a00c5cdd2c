// Drops the deleted rows of a table.
#pragma once

#include <string>

#include "dbase/dbf/schema.h"
#include "dbase/system/progress.h"

namespace dbase {

class Folders;

struct Compaction {
    RecordNumber kept = 0, dropped = 0; // rows
};

/// Replaces a table by one without its deleted rows, whose tags are new; the others keep their order and get
/// new numbers. Without deleted rows nothing is changed. Errors: those of a BulkLoader that replaces a table;
/// the table is then as before.
Compaction compactTable(const std::string& tableFile, const Progress& progress = {});
Compaction compactTable(const std::string& tableFile, Folders& folders, const Progress& progress = {});

} // namespace dbase
