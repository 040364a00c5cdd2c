// Checks the journals of a table: the one beside it, and those that were set aside.
#pragma once

#include "dbase/table/check_report.h"

namespace dbase {

class File;
class TableFile;

/// Notes a journal that the next opening will redo or set aside, and the rows of journals set aside that are
/// not in the table. `index` may be null. The caller holds the structure lock.
void checkJournals(const TableFile& records, const File* index, CheckReport& report);

} // namespace dbase
