// The full consistency check of a table: header, records, every index page, every tag against a sorted scan.
#pragma once

#include <string>
#include <vector>

#include "dbase/system/progress.h"
#include "dbase/table/table_definition.h"

namespace dbase {

struct Finding {
    std::string file;  // path
    std::string place; // "cabecera", "registro 12", "página 40", "tag VIA"…
    std::string text;  // what is wrong, Spanish UTF-8
};

struct CheckResult {
    std::vector<Finding> findings; // at most a few hundred; `truncated` says that there are more
    bool truncated = false;
    std::uint32_t records = 0;
    std::size_t tags = 0;
};

/// Checks a table without changing anything. `knownTags`: tags that the caller knows the table must have.
/// Faults of the file are findings; only what keeps it from being read at all (not there, no permission)
/// raises Error.
[[nodiscard]] CheckResult checkTable(const std::string& tableFile, const Progress& progress = {},
                                     const std::vector<TagDefinition>& knownTags = {});

/// Rebuilds all tags of a table from its records, under the exclusive lock; a damaged or missing index is
/// made anew from the tag definitions that can still be read, completed by the `knownTags` of the caller.
/// Errors: Error.
void reindexTable(const std::string& tableFile, const std::vector<TagDefinition>& knownTags = {},
                  const Progress& progress = {});

} // namespace dbase
