// Redoes the changes of a journal's entries.
#pragma once

#include <vector>

#include "dbase/dbf/table_file.h"
#include "dbase/journal/journal.h"
#include "dbase/mdx/update_stamp.h"

namespace dbase {

/// What redo() could not put back, because other programs have changed the records since.
struct NotRedone {
    std::vector<std::vector<char>> displaced; // rows in whose place another one stands
    bool isChanged = false;                   // of a record changed in place, the other program's state stays
};

/// Rewrites each record that is not yet in the state of its last entry, and corrects the count. Touches only
/// records whose bytes on the disk are a mixture of the entries' states: a record that another program has
/// changed since stays as that program left it. Records after the first `known` may never have reached the
/// disk; a row of the entries returns to its number all the same, and fillHoles() blanks those before it.
/// Entries are in order, oldest first. The caller holds the exclusive structure lock and rebuilds the tags.
/// Errors: Error(Io, DiskFull).
NotRedone redo(TableFile& records, const std::vector<JournalEntry>& entries, RecordNumber known);

/// What to do with rows that a change was adding: without the append lock another program may be adding its
/// own in their place.
enum class NewRows { Redo, Leave };

/// The same for the change in which a writer died: the journal's last one, if it has the counter of the mark
/// left set. `left`: the stamp as found.
void redoUnfinished(TableFile& records, Journal& journal, const UpdateStamp& left, NewRows newRows);

/// Turns counted rows after the first `known` whose bytes never reached the disk into deleted blank ones, so
/// that all others keep their numbers.
void fillHoles(TableFile& records, RecordNumber known);

/// Those of the rows that no live record equals in a column, each once and in their order.
[[nodiscard]] std::vector<std::vector<char>>
rowsMissingFrom(const TableFile& records, std::vector<std::vector<char>> rows, const Column& column);

} // namespace dbase
