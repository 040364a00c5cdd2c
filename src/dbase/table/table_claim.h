// The right to create, replace or remove the files of one table; see
// docs/decisions/017-claim-and-replacement.md.
#pragma once

#include <memory>
#include <string>

#include "AmbrelExport.h"

namespace dbase {

class File;
class Folders;

/// One holder at a time, among all programs on all workstations. Shown by a locked file beside the table,
/// POSTAL.AMC for POSTAL.DBF, removed at the end; one that a killed program left claims nothing.
class AMBREL_EXPORT TableClaim {
public:
    /// What becomes of the temporary files that killed holders left.
    enum class Remains { Remove, Leave };

    /// `tableFile`: present or future path of the table. Waits for the present holder, at most
    /// lockPatience(). Before Remains::Remove, an exchange of the table that was stopped is concluded.
    /// Errors: Error(LockTimeout, AccessDenied), which names the table.
    explicit TableClaim(const std::string& tableFile);
    TableClaim(const std::string& tableFile, Folders& folders, Remains remains = Remains::Remove);
    ~TableClaim();
    TableClaim(const TableClaim&) = delete;
    TableClaim& operator=(const TableClaim&) = delete;

    /// The table's path, without links.
    [[nodiscard]] const std::string& tableFile() const { return table_; }
    [[nodiscard]] Folders& folders() const { return folders_; }

    void removeLeftOvers() const;

private:
    void holdConcluded();
    void hold();
    void findName();
    void release() noexcept;

    Folders& folders_;
    std::string table_;
    std::unique_ptr<File> file_; // locked
};

/// Where the new file is written that will replace this one.
[[nodiscard]] std::string temporaryName(const std::string& file);

} // namespace dbase
