// The definition of a tag: the part of an index that the definer of a table provides.
#pragma once

#include <string>

namespace dbase {

/// One order of a table.
struct TagDefinition {
    std::string name; // upper case, at most 10 characters
    std::string expression;
    std::string condition = {}; // FOR; empty for none
    bool unique = false, descending = false;
};

} // namespace dbase
