// What the system knows of a file besides its bytes: which file it is, and who may use it.
#pragma once

#include <cstdint>
#include <string>

namespace dbase {

/// The state of the names in a folder; see Folders::namesState().
struct NamesState {
    std::uint64_t device = 0, inode = 0; // of the folder
    std::int64_t changed = 0;            // in nanoseconds

    bool operator==(const NamesState&) const = default;
};

struct FileStatus {
    std::uint64_t device = 0, inode = 0;
    std::uint64_t names = 1; // hard links; 0 once the last one was removed
    std::uint32_t owner = 0, group = 0;
    std::uint32_t mode = 0;      // the nine permission bits
    std::string accessList = {}; // of POSIX, as the system stores it; empty if the mode says all

    /// Whether both are the same file, whatever its names.
    [[nodiscard]] bool isSameFile(const FileStatus& other) const {
        return device == other.device && inode == other.inode;
    }
};

} // namespace dbase
