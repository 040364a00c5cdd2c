// Bringing the records of a table back to a sound state after a stop of the machine or the death of a writer:
// the one set of steps for a program that opens, touches or reindexes it. See
// docs/decisions/013-one-recovery.md.
#pragma once

#include "dbase/dbf/table_file.h"
#include "dbase/journal/journal.h"
#include "dbase/mdx/update_stamp.h"

namespace dbase {

/// The caller holds the exclusive structure lock, and rebuilds the tags after the records.
class Recovery {
public:
    /// `index`: null in a table without one. `journal`: null in a table that keeps none. All outlive it.
    Recovery(TableFile& records, File* index, Journal* journal)
        : records_(records), index_(index), journal_(journal) {}

    /// Comes before anything is written: a program that opens the table after a death or a stop of the
    /// machine finds that there was one.
    void beginJournal();
    /// Puts records and index on the disk.
    void sync();

    /// Makes the records what the programs before a stop of the machine left: those that the journal keeps
    /// are redone, the count is taken again, the tail cut, rows that never arrived made blank. They are on
    /// the disk then; the journal stays, and goes when the tags are on the disk too. For one that is alone at
    /// the table.
    void afterStop();
    /// Makes the records what the last writer left or, if it died in a change, was about to leave. `left`:
    /// the stamp as it is found. True when tail() is to follow as the table is left.
    [[nodiscard]] bool afterDeath(const UpdateStamp& left);
    /// Cuts what lies after the last record, part of a row or the rows of a load that never came to count.
    /// Nothing while another program is adding a row.
    void tail();

private:
    struct AppendLock;

    void forgetViews();
    [[nodiscard]] bool count();

    TableFile& records_;
    File* index_;
    Journal* journal_;
};

} // namespace dbase
