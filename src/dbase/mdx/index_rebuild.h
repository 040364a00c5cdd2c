// Making every tag of an index anew from the records of its table.
#pragma once

#include "dbase/dbf/table_file.h"
#include "dbase/mdx/index_file.h"
#include "dbase/system/progress.h"

namespace dbase {

/// Rebuilds every tree in the index file as it lies there, tag headers staying where they are. The caller
/// holds the exclusive structure lock. What ends it early leaves the in-update mark standing. Errors: Error.
void rebuildTrees(TableFile& records, IndexFile& index, const Progress& progress);

} // namespace dbase
