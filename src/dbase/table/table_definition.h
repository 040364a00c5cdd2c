// Creating tables: the columns and tags of a new .DBF with its production .MDX.
#pragma once

#include <string>
#include <vector>

#include "AmbrelExport.h"
#include "dbase/dbf/schema.h"
#include "dbase/mdx/tag_definition.h"

namespace dbase {

/// What a new table is made of.
struct TableDefinition {
    std::string name; // without extension, upper case: the file is NAME.DBF, its index NAME.MDX
    std::vector<Column> columns;
    std::vector<TagDefinition> tags;
    LanguageDriver languageDriver = LanguageDriver::AnsiUs;
};

/// What becomes of a table that is there already.
enum class IfExists { Refuse, Replace };

/// Creates both files in a folder, empty. Replacing goes through temporary files, so that a failure leaves
/// the old table. Errors: Error(Exists), BadTable, BadExpression, AccessDenied, DiskFull.
AMBREL_EXPORT void createTable(const std::string& folder, const TableDefinition& definition,
                               IfExists ifExists = IfExists::Refuse);

class File;

/// The same into files given by the caller, which must be empty; `index` may be null when there are no tags.
void writeEmptyTable(File& table, File* index, Schema schema, const std::string& name,
                     const std::vector<TagDefinition>& tags);

/// Marks the columns that are by themselves the key of a tag.
[[nodiscard]] std::vector<bool> columnsWithTag(const Schema& schema, const std::vector<TagDefinition>& tags);

} // namespace dbase
