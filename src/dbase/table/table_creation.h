// Creates a table in folders given by the caller; for folders on disk see table_definition.h.
#pragma once

#include "dbase/system/folders.h"
#include "dbase/table/table_definition.h"

namespace dbase {

/// Like createTable() without `folders`.
void createTable(Folders& folders, const std::string& folder, const TableDefinition& definition,
                 IfExists ifExists = IfExists::Refuse);

} // namespace dbase
