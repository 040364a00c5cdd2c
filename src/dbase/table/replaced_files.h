// The files of a table that is being replaced, and the steps by which new ones take their names.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "dbase/system/folders.h"

namespace dbase {

struct ReplacedFiles {
    std::string table, index;       // the index may not exist
    std::string newTable, newIndex; // beside them
};
/// With the names of new files that a replacement uses.
[[nodiscard]] ReplacedFiles replacedFiles(std::string table, std::string index);

/// Gives the new files the names of the old ones, each on the disk before the next; goes on where an earlier
/// call was stopped. `hasIndex`: whether the new table has one.
void takeNames(Folders& folders, const ReplacedFiles& files, bool hasIndex);

/// Sets or clears the in-update mark of an index, on the disk. A table found with it has its tags rebuilt
/// from its records, whether they are those of its index or those of another table. `session`: as of now if
/// none is given.
void setMark(File& index, bool isInUpdate, std::optional<std::uint64_t> session = std::nullopt);

/// Sets the mark, with the session, of a table whose records and index are going to be changed where they
/// are.
void markHalfChanged(File& index, std::uint64_t session);
/// Tells the user where an index bears that mark, and nothing says any more what was being done.
void warnIfHalfChanged(const std::string& table, const File& index);
void warnOfHalfChanges(const std::string& tables);

/// Holds the opening and the presence lock of a table that will lose its name: programs that open it wait,
/// until they find the new one. Errors: Error(LockTimeout) if any program has it open.
[[nodiscard]] std::unique_ptr<File> openAlone(Folders& folders, const std::string& table);
/// Also for programs that do not know our presence lock.
void requireUnused(File& table);

} // namespace dbase
