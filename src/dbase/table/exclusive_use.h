// The exclusive use of an open table; every change goes through it.
#pragma once

#include <optional>

#include "dbase/dbf/table_file.h"
#include "dbase/lock/locks.h"
#include "dbase/system/progress.h"
#include "dbase/table/table.h"

namespace dbase {

/// Holds the exclusive structure lock of a table, which is recovered first if necessary. Anything read from
/// the table before must be read again.
class ExclusiveUse {
public:
    /// Errors: Error, also if the table needs recovery and cannot be recovered.
    explicit ExclusiveUse(Table& table);
    ExclusiveUse(const ExclusiveUse&) = delete;
    ExclusiveUse& operator=(const ExclusiveUse&) = delete;

    [[nodiscard]] TableFile& records();
    /// Null for a table without one.
    [[nodiscard]] IndexFile* index();
    /// Rebuilds all tags from the records.
    void rebuildTags(const Progress& progress);

    // --- Many rows at once
    /// Keeps other programs from adding rows during the lifetime of this object. Rows may then be written
    /// after the last one.
    void beginLoad();
    /// Counts in the rows that were written after the last record, the first of them with the end mark in
    /// place of its own `firstMark`, and rebuilds the tags.
    void addRows(std::uint32_t newCount, char firstMark, const Progress& progress);
    /// Takes back such rows, counted already or not.
    void withdrawRows(std::uint32_t oldCount);
    /// Flushes records and index to the disk.
    void sync();

private:
    friend class Table;
    /// `left`: what an earlier program left at the table; Sound: only what the files show.
    ExclusiveUse(Table& table, Table::Health left);

    Table& table_;
    StructureLock lock_;
    std::optional<FileLock> appending_; // taken after the structure lock and released before it
};

} // namespace dbase
