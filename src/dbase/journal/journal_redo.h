// Making the records what a journal says they became.
#pragma once

#include <vector>

#include "dbase/dbf/table_file.h"
#include "dbase/journal/journal.h"
#include "dbase/mdx/update_stamp.h"

namespace dbase {

/// Writes each record again that is not yet what the last of the entries made of it, and makes the count
/// true. Only what lies on the disk as a mixture of states that the entries know is touched: a record that
/// another program changed meanwhile stays as that program left it. Entries come oldest first. The caller
/// holds the exclusive structure lock and rebuilds the tags. Errors: Error(Io, DiskFull).
void redo(TableFile& records, const std::vector<JournalEntry>& entries);

/// The same for the change that a writer died at: the journal tells it last, with the counter of the mark
/// that he left. `left`: the stamp as it is found.
void redoUnfinished(TableFile& records, Journal& journal, const UpdateStamp& left);

/// Rows that count and whose bytes never reached the disk become deleted blank ones, so that all others keep
/// their numbers.
void fillHoles(TableFile& records);

} // namespace dbase
