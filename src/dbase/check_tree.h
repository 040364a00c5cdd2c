// The trees of an index against the records of its table: part of the full check.
#pragma once

#include "dbase/check_report.h"
#include "dbase/index_file.h"
#include "dbase/table_file.h"

namespace dbase {

/// Every page of every tag, every entry against its record, every record against its entries.
void checkTrees(const TableFile& records, const IndexFile& index, CheckReport& report,
                const Progress& progress);

} // namespace dbase
