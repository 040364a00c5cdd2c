// The exclusive use of an open table; every change goes through it.
#pragma once

#include <optional>

#include "dbase/dbf/table_file.h"
#include "dbase/lock/locks.h"
#include "dbase/mdx/index_rebuild.h"
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
    /// Keeps other programs, of whatever kind, from adding rows during the lifetime of this object.
    void lockAppend();

    // --- Many rows at once
    /// Takes the locks of lockAppend(). Rows may then be written after the last one.
    void beginLoad();
    /// After beginLoad(): lets others read, as the table was, until the rows are counted in. On a network
    /// folder, where locks send what was written, nobody reads meanwhile.
    void shareLoad();
    /// Counts in the rows that were written after the last record, the first of them with the end mark in
    /// place of its own `firstMark`, and rebuilds the tags. Shared, it excludes readers only while one
    /// becomes the other.
    void addRows(std::uint32_t newCount, char firstMark, const Progress& progress);
    /// Takes back such rows, counted already or not.
    void withdrawRows(std::uint32_t oldCount);
    /// Flushes records and index to the disk.
    void sync();

private:
    friend class Table;
    /// `left`: what an earlier program left at the table; Sound: only what the files show.
    ExclusiveUse(Table& table, Table::Health left);
    [[nodiscard]] std::optional<NewTrees> buildBeside(const ScannedRecords& which, const Progress& progress);
    void countIn(std::uint32_t newCount, char firstMark, const std::optional<NewTrees>& trees,
                 const Progress& progress);

    Table& table_;
    StructureLock lock_;
    // Taken after the structure lock and released before it.
    std::optional<FileLock> appending_, loading_;
};

} // namespace dbase
