// An open table: records and production index together, shared by all cursors of the process.
//
// A short structure lock surrounds each operation: shared for reading, exclusive for a record plus all its tags.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "dbase/schema.h"

namespace dbase {
class Table; // full interface follows with the implementation
} // namespace dbase
