// Creating tables: the columns and tags of a new .DBF with its production .MDX.
#pragma once

#include <string>
#include <vector>

#include "dbase/schema.h"

namespace dbase {

struct TagDefinition {
    std::string name;       // upper case, at most 10 characters
    std::string expression;
    std::string condition = {};  // FOR; empty for none
    bool unique = false, descending = false;
};

struct TableDefinition {
    std::string name; // without extension, upper case: the file is NAME.DBF, its index NAME.MDX
    std::vector<Column> columns;
    std::vector<TagDefinition> tags;
    LanguageDriver languageDriver = LanguageDriver::AnsiUs;
};

enum class IfExists { Refuse, Replace };

/// Creates both files in a folder, empty. Replacing goes through temporary files, so that a failure leaves the old table.
/// Errors: Error(Exists), BadTable, BadExpression, AccessDenied, DiskFull.
void createTable(const std::string& folder, const TableDefinition& definition, IfExists ifExists = IfExists::Refuse);

} // namespace dbase
