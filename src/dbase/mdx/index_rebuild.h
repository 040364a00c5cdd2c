// Rebuilds every tag of an index from the records of its table.
#pragma once

#include "dbase/dbf/table_file.h"
#include "dbase/mdx/index_file.h"
#include "dbase/system/progress.h"

namespace dbase {

/// Rebuilds every tree in place; the tag headers stay where they are. The caller holds the exclusive
/// structure lock. If it does not finish, the in-update mark stays set. Errors: Error.
void rebuildTrees(TableFile& records, IndexFile& index, const Progress& progress);

} // namespace dbase
