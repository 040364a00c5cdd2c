// The exclusive use of an open table, through which everything goes that changes it.
#pragma once

#include <optional>

#include "dbase/dbf/table_file.h"
#include "dbase/lock/locks.h"
#include "dbase/system/progress.h"

namespace dbase {

class Table;

/// Holds the exclusive structure lock of a table that was recovered where it had to be. What was read of the
/// table before is to be read again.
class ExclusiveUse {
public:
    /// Errors: Error, also for a table that has to be recovered and cannot be.
    explicit ExclusiveUse(Table& table) : ExclusiveUse(table, AfterStop::No) {}
    ExclusiveUse(const ExclusiveUse&) = delete;
    ExclusiveUse& operator=(const ExclusiveUse&) = delete;

    /// Rebuilds all tags from the records.
    void rebuildTags(const Progress& progress);

    // --- Many rows at once
    /// Keeps other programs from adding rows as long as this lasts. Rows may then be written after the last
    /// one.
    void beginLoad();
    [[nodiscard]] TableFile& records();
    /// Makes the rows count that were written after the last record, the first of them with the end mark in
    /// the place of its own `firstMark`, and rebuilds the tags.
    void addRows(std::uint32_t newCount, char firstMark, const Progress& progress);
    /// Takes such rows back, whether they counted already or not.
    void withdrawRows(std::uint32_t oldCount);
    /// Puts records and index on the disk.
    void sync();

private:
    friend class Table;
    enum class AfterStop { No, Yes };
    ExclusiveUse(Table& table, AfterStop afterStop);

    Table& table_;
    StructureLock lock_;
    std::optional<FileLock> appending_; // after the structure, and let go before it
};

} // namespace dbase
