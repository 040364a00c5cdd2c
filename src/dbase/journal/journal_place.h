// Where the journal of a table is: in a file beside it, POSTAL.AMJ for POSTAL.DBF.
#pragma once

#include <memory>
#include <string>

#include "dbase/system/folders.h"

namespace dbase {

class JournalPlace {
public:
    virtual ~JournalPlace() = default;
    JournalPlace() = default;
    JournalPlace(const JournalPlace&) = delete;
    JournalPlace& operator=(const JournalPlace&) = delete;

    /// Null if there is none. Errors of all operations: Error, which names the journal.
    [[nodiscard]] virtual std::unique_ptr<File> openExisting() = 0;
    /// Creates an empty file and puts its name on the disk.
    [[nodiscard]] virtual std::unique_ptr<File> create() = 0;
    virtual void remove() = 0;
};

/// The place beside a table file.
[[nodiscard]] std::unique_ptr<JournalPlace> journalBeside(const std::string& tableFile,
                                                          Folders& folders = diskFolders());

/// A text that changes at each boot of the machine; between two boots, data held only in memory is lost.
[[nodiscard]] std::string bootIdentity();
/// Pretends another boot.
void setBootIdentity(std::string identity);

} // namespace dbase
