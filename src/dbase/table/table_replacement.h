// Putting new files in the place of a table, whole or not at all.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "AmbrelExport.h"
#include "dbase/system/folders.h"

namespace dbase {

/// The files of a table that are being made beside the ones they are going to replace. Until commit() the old
/// table is untouched; without it the new files vanish.
class AMBREL_EXPORT TableReplacement {
public:
    /// `tableFile`: path that the table has or is to have. A table that anybody has open is refused:
    /// Error(LockTimeout).
    explicit TableReplacement(std::string tableFile);
    TableReplacement(std::string tableFile, Folders& folders);
    ~TableReplacement();
    TableReplacement(const TableReplacement&) = delete;
    TableReplacement& operator=(const TableReplacement&) = delete;

    [[nodiscard]] const std::string& newTableFile() const { return newTable_; }
    [[nodiscard]] const std::string& newIndexFile() const { return newIndex_; }
    /// Renames the new files over the old ones; the index last, the old one marked as unfinished before.
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
