// Brings the records of a table back to a sound state after a crash of the machine or the death of a writer:
// the one set of steps for programs that open, use or reindex it. See docs/decisions/013-one-recovery.md.
#pragma once

#include <string>
#include <vector>

#include "dbase/dbf/table_file.h"
#include "dbase/expression/expression.h"
#include "dbase/journal/journal.h"
#include "dbase/mdx/update_stamp.h"

namespace dbase {

/// The stamp of an index; without content in any other file. Null: no index.
[[nodiscard]] UpdateStamp stampOf(const File* index);
/// The session in it; nothing without an index.
[[nodiscard]] std::optional<std::uint64_t> sessionOf(const File* index);
/// What a journal begun now would record.
[[nodiscard]] JournalOrigin originOf(const TableFile& records);

/// The column by which users know a record: that of the first key of whole columns, or else the first one.
[[nodiscard]] const Column& identifyingColumn(const Schema& schema, const std::vector<Expression>& keys);

/// The caller holds the exclusive structure lock, and rebuilds the tags after recovering the records.
class Recovery {
public:
    /// `index`, `journal`: null in a table without one. All must outlive this object.
    Recovery(TableFile& records, File* index, Journal* journal)
        : records_(records), index_(index), journal_(journal) {}

    /// Call before anything is written, so that a program that opens the table after a death or a crash of
    /// the machine notices it.
    void beginJournal();
    /// Flushes records and index to the disk.
    void sync();

    /// Whether the journal is that of other files: then call afterRestore().
    [[nodiscard]] bool hasOthersJournal() const;
    /// Restores the records as the programs before a crash of the machine left them: redoes the kept changes
    /// of the journal, counts the records again, cuts the tail, blanks rows that never arrived, adds rows in
    /// whose place another program has put its own, unless a live record equals them in `key`. The records
    /// are then on the disk; call endJournal() once the tags are too. Only for a program that is alone at the
    /// table.
    void afterStop(const Column& key);
    /// The same after a backup was put back: counts the records, obeys nothing else. True if tail() must be
    /// called on leaving the table.
    [[nodiscard]] bool afterRestore();
    /// Ends a recovery of the two kinds above: nobody needs the journal any more, or it is set aside, which
    /// users get to know.
    void endJournal();
    /// Restores the records as the last writer left them or, if it died during a change, was about to leave
    /// them. `left`: the stamp as found. True if tail() must be called on leaving the table.
    [[nodiscard]] bool afterDeath(const UpdateStamp& left);
    /// Cuts off what follows the last record: part of a row, or rows of a load that never came to count. Does
    /// nothing while another program is adding a row.
    void tail();

private:
    struct AppendLock;

    void forgetViews();
    [[nodiscard]] bool count();
    void addDisplaced(std::vector<std::vector<char>> rows);

    TableFile& records_;
    File* index_;
    Journal* journal_;
    std::string whySetAside_; // set by a recovery that leaves something in the journal
};

} // namespace dbase
