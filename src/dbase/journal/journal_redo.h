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

/// What becomes of rows that a change was adding: without the append lock another program may be adding its
/// own in their place.
enum class NewRows { Redo, Leave };

/// The same for the change in which a writer died: the last one of the journal, with the counter of the mark
/// that was left. `left`: the stamp as it is found.
void redoUnfinished(TableFile& records, Journal& journal, const UpdateStamp& left, NewRows newRows);

/// Rows that count and whose bytes never reached the disk become deleted blank ones, so that all others keep
/// their numbers.
void fillHoles(TableFile& records);

} // namespace dbase
