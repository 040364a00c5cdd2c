// Where the journal of a table is: in a file beside it, POSTAL.AMJ for POSTAL.DBF.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "dbase/system/folders.h"

namespace dbase {

class JournalPlace {
public:
    virtual ~JournalPlace() = default;
    JournalPlace() = default;
    JournalPlace(const JournalPlace&) = delete;
    JournalPlace& operator=(const JournalPlace&) = delete;

    /// Null if there is none, or an empty one. Errors of all operations: Error, which names the journal;
    /// Error(AccessDenied) for one that must be left alone (see journal_trust.h).
    [[nodiscard]] virtual std::unique_ptr<File> openExisting() = 0;
    /// Creates an empty file, or takes the one that is there, and puts its name on the disk.
    [[nodiscard]] virtual std::unique_ptr<File> create() = 0;
    /// Removes the file, or empties it if the system does not permit its removal.
    virtual void remove() = 0;
    /// Gives it a name that no program obeys, and puts that on the disk. Returns the new path.
    virtual std::string setAside() = 0;
    /// Why a journal cannot be written here, in Spanish; empty if it can. Errors: as those of openExisting().
    [[nodiscard]] virtual std::string objectionToWriting() { return {}; }
};

/// The place beside a table file.
[[nodiscard]] std::unique_ptr<JournalPlace> journalBeside(const std::string& tableFile,
                                                          Folders& folders = diskFolders());

/// The journals of a table that were set aside, POSTAL.AMJ.apartado and so on: paths, sorted.
[[nodiscard]] std::vector<std::string> journalsSetAside(const std::string& tableFile,
                                                        const Folders& folders = diskFolders());
/// The place of such a journal, which can only be read.
[[nodiscard]] std::unique_ptr<JournalPlace> journalSetAside(const std::string& path);

/// A text that changes at each boot of the machine; between two boots, data held only in memory is lost.
[[nodiscard]] std::string bootIdentity();
/// Pretends another boot.
void setBootIdentity(std::string identity);

} // namespace dbase
