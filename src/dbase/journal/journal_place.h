// Where the journal of a table lies: a file beside it, POSTAL.AMJ for POSTAL.DBF.
#pragma once

#include <memory>
#include <string>

#include "dbase/system/file.h"

namespace dbase {

class JournalPlace {
public:
    virtual ~JournalPlace() = default;
    JournalPlace() = default;
    JournalPlace(const JournalPlace&) = delete;
    JournalPlace& operator=(const JournalPlace&) = delete;

    /// Null when there is none. Errors of all: Error that names the journal.
    [[nodiscard]] virtual std::unique_ptr<File> openExisting() = 0;
    /// An empty file, whose name has reached the disk.
    [[nodiscard]] virtual std::unique_ptr<File> create() = 0;
    virtual void remove() = 0;
};

/// The place beside a table file of the disk.
[[nodiscard]] std::unique_ptr<JournalPlace> journalBeside(const std::string& tableFile);

/// Text that changes whenever the machine starts: what lay in memory only is lost between two of them.
[[nodiscard]] std::string bootIdentity();
/// Pretends another one.
void setBootIdentity(std::string identity);

} // namespace dbase
