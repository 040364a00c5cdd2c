// Creates a table in folders given by the caller; for folders on disk see table_definition.h.
#pragma once

#include "dbase/system/folders.h"
#include "dbase/table/table_claim.h"
#include "dbase/table/table_definition.h"

namespace dbase {

/// Like createTable() without `folders`.
void createTable(Folders& folders, const std::string& folder, const TableDefinition& definition,
                 IfExists ifExists = IfExists::Refuse);

/// The same with a claim of the caller's on the table.
AMBREL_EXPORT void createTable(const TableClaim& claim, const TableDefinition& definition,
                               IfExists ifExists = IfExists::Refuse);

/// Removes a table, unless a program has it open: Error(LockTimeout). Does nothing if there is none.
AMBREL_EXPORT void removeTable(const TableClaim& claim);

} // namespace dbase
