// The files of a new table, without records.
#pragma once

#include <string>
#include <vector>

#include "dbase/dbf/schema.h"
#include "dbase/mdx/tag_definition.h"

namespace dbase {

class File;
class TableReplacement;
struct TableDefinition;

/// Writes the headers into files given by the caller, which must be empty; `index` may be null if there are
/// no tags.
void writeEmptyTable(File& table, File* index, Schema schema, const std::string& name,
                     const std::vector<TagDefinition>& tags);

/// Creates the new files of a replacement like this.
void makeEmptyTable(TableReplacement& replacement, const TableDefinition& definition);

/// Marks the columns that alone are the key of a tag.
[[nodiscard]] std::vector<bool> columnsWithTag(const Schema& schema, const std::vector<TagDefinition>& tags);

} // namespace dbase
