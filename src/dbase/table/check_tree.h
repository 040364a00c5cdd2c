// Checks the trees of an index against the records of its table: part of the full check.
#pragma once

#include "dbase/dbf/table_file.h"
#include "dbase/mdx/index_file.h"
#include "dbase/table/check_report.h"

namespace dbase {

/// Checks every page of every tag, every entry against its record, every record against its entries.
void checkTrees(const TableFile& records, const IndexFile& index, CheckReport& report,
                const Progress& progress);

} // namespace dbase
