// The names of an open table: whether they still lead to its files, or to others that were put in their
// place.
#pragma once

#include <chrono>
#include <optional>
#include <string>

#include "dbase/system/folders.h"

namespace dbase {

class TableNames {
public:
    /// The paths of the open files are their names. `index` may be null. All must outlive this object.
    TableNames(const Folders& folders, const File& records, const File* index);

    /// Asks the system. Within a second of the last look at both names that their folder is as it was proves
    /// them. Errors: Error(Io).
    [[nodiscard]] bool leadHere();
    /// The same, but asks at most once a second.
    [[nodiscard]] bool ledHereLately();

private:
    struct Name {
        std::string path;
        FileStatus file;
        bool isRemote;
    };
    [[nodiscard]] static Name nameOf(const File& file);
    [[nodiscard]] bool leadsHere(const Name& name) const;
    [[nodiscard]] std::optional<NamesState> folderState() const;

    const Folders& folders_;
    Name records_;
    std::optional<Name> index_;
    std::string folder_; // of both; empty if they have none in common
    std::chrono::nanoseconds asked_;
    std::optional<NamesState> askedIn_; // of the folder, before the names were looked at
    bool areLost_ = false;              // they do not come back
};

/// The clock of the names; null for the system's.
void setNamesClock(std::chrono::nanoseconds (*clock)());

} // namespace dbase
