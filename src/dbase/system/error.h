// The one exception type of the table engine.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

#include "AmbrelExport.h"

namespace dbase {

/// What went wrong, for programs that handle some errors differently.
enum class ErrorCode {
    NotFound,      // a folder, file, column or tag that does not exist
    Exists,        // a file that must not be overwritten
    AccessDenied,  // the system refuses to open or write
    ReadOnly,      // the table is open for reading only
    Io,            // a read, write or sync that failed
    DiskFull,      // no space left; nothing of the operation remains visible
    TooLarge,      // 2 GiB and over, or more than the format holds
    BadTable,      // a .DBF that contradicts itself
    BadIndex,      // an .MDX that contradicts itself
    StaleIndex,    // an .MDX that no longer matches the records and cannot be rebuilt here
    BadLayout,     // columns that do not fit the bound ones
    BadExpression, // a key, FOR or filter text that is not understood
    BadValue,      // a value that its column cannot hold
    BadState,      // an operation that the dataset's state does not allow
    LockRefused,   // a record that another user holds
    LockTimeout,   // a structure lock that was not released in time
    RecordChanged, // the row shown is no longer the stored one
    Replaced,      // an open table whose files another program has replaced
};

/// An error of the engine. `what()` is a Spanish UTF-8 text that the user can act on; it names the file and,
/// where it helps, the record, page or column.
class AMBREL_EXPORT Error : public std::runtime_error {
public:
    /// Puts the file's path in front of the text of what().
    Error(ErrorCode code, std::string file, const std::string& text);

    /// What programs decide by.
    [[nodiscard]] ErrorCode code() const noexcept { return code_; }
    /// Path of the file concerned; empty if there is none.
    [[nodiscard]] const std::string& file() const noexcept { return file_; }

private:
    ErrorCode code_;
    std::string file_;
};

} // namespace dbase
