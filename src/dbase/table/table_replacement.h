// Replaces the files of a table, completely or not at all.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "AmbrelExport.h"
#include "dbase/system/folders.h"

namespace dbase {

/// The new files of a table, created beside those that they will replace. Until commit() the old table is
/// untouched; without it the new files are deleted.
class AMBREL_EXPORT TableReplacement {
public:
    /// `tableFile`: present or future path of the table. Error(LockTimeout) if any program has the table
    /// open.
    explicit TableReplacement(std::string tableFile);
    TableReplacement(std::string tableFile, Folders& folders);
    ~TableReplacement();
    TableReplacement(const TableReplacement&) = delete;
    TableReplacement& operator=(const TableReplacement&) = delete;

    [[nodiscard]] const std::string& newTableFile() const { return newTable_; }
    [[nodiscard]] const std::string& newIndexFile() const { return newIndex_; }
    /// Renames the new files over the old ones, the index last; the old index is marked as unfinished first.
    void commit(bool hasIndex);

private:
    void recoverOld() const;

    Folders& folders_;
    std::string table_, index_, newTable_, newIndex_;
    std::unique_ptr<File> old_; // holds the presence lock
    std::optional<std::string> oldIndex_;
    bool committed_ = false;
};

} // namespace dbase
