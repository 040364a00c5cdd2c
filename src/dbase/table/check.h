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
    std::vector<Finding> findings; // at most a few hundred; if `truncated`, there are more
    std::vector<Finding> notes;    // what is right, and yet worth knowing
    bool truncated = false;
    bool isChecked = true; // false amid an exchange that a stopped program left: a note says so
    std::uint32_t records = 0;
    std::size_t tags = 0;
};

/// Checks a table without changing anything. `knownTags`: tags that the caller knows the table must have.
/// Faults of the file are findings; throws Error only if the file cannot be read at all (missing, no
/// permission).
[[nodiscard]] CheckResult checkTable(const std::string& tableFile, const Progress& progress = {},
                                     const std::vector<TagDefinition>& knownTags = {});

/// Rebuilds all tags of a table from its records, under the exclusive lock; recreates a damaged or missing
/// index from the tag definitions that can still be read, completed by the caller's `knownTags`. Errors:
/// Error.
void reindexTable(const std::string& tableFile, const std::vector<TagDefinition>& knownTags = {},
                  const Progress& progress = {});

} // namespace dbase
