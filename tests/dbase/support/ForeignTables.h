// Tables written by other programs, each with a listing of what they see in them.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "dbase/dbf/schema.h"

namespace dbase::test {

/// The other program's answer to a seek.
struct ListedSeek {
    bool isExact;
    std::optional<double> number; // of a numeric tag
    std::string key;              // of a character tag
    RecordNumber found;           // 0: none, or after the last
};

struct ListedTag {
    std::string name, expression;
    bool isUnique = false, isDescending = false;
    std::vector<RecordNumber> order;
    std::vector<ListedSeek> seeks;
};

struct Listing {
    std::string table;
    RecordNumber records = 0;
    unsigned languageDriver = 0;
    std::vector<RecordNumber> deleted;
    std::vector<ListedTag> tags;
};

/// The listing of a table by its name.
[[nodiscard]] Listing listingOf(const std::string& name);

/// Copies both files of a foreign table into a folder and returns the path of the .DBF.
std::string copyForeignTable(const std::string& name, const std::string& folder);

} // namespace dbase::test
