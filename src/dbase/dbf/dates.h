// Today's date as file headers keep it.
#pragma once

#include "dbase/dbf/table_header.h"

namespace dbase {

/// Three bytes: year - 1900, month, day, of local time.
void encodeHeaderDate(char* bytes);

/// No records, changed today.
[[nodiscard]] HeaderCounts todaysCounts();

} // namespace dbase
