// Creates tables: the columns and tags of a new .DBF with its production .MDX.
#pragma once

#include <string>
#include <vector>

#include "AmbrelExport.h"
#include "dbase/dbf/schema.h"
#include "dbase/mdx/tag_definition.h"

namespace dbase {

/// The definition of a new table.
struct TableDefinition {
    std::string name; // without extension, upper case: the file is NAME.DBF, its index NAME.MDX
    std::vector<Column> columns;
    std::vector<TagDefinition> tags;
    LanguageDriver languageDriver = LanguageDriver::AnsiUs;
};

/// What happens to an existing table.
enum class IfExists { Refuse, Replace };

/// Creates both files in a folder, empty. Replacing uses temporary files, so that a failure leaves the old
/// table. Errors: Error(Exists), BadTable, BadExpression, AccessDenied, DiskFull.
AMBREL_EXPORT void createTable(const std::string& folder, const TableDefinition& definition,
                               IfExists ifExists = IfExists::Refuse);

} // namespace dbase
