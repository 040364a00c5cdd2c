// Today's date as file headers keep it.
#pragma once

#include "dbase/dbf/table_header.h"

namespace dbase {

/// Writes three bytes: year - 1900, month, day, in local time.
void encodeHeaderDate(char* bytes);

/// Counts of a table without records, changed today.
[[nodiscard]] HeaderCounts todaysCounts();

} // namespace dbase
