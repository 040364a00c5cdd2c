// What makes one order of a table: the part of an index that whoever defines a table has to say.
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
