// Creating a table in folders given by the caller; see table_definition.h for those of the disk.
#pragma once

#include "dbase/system/folders.h"
#include "dbase/table/table_definition.h"

namespace dbase {

/// As createTable() without folders.
void createTable(Folders& folders, const std::string& folder, const TableDefinition& definition,
                 IfExists ifExists = IfExists::Refuse);

} // namespace dbase
