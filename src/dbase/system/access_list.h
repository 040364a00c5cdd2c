// Who may write a file, from its mode and its POSIX access list; and the access of a file beside a table when
// the system does not let us give it the table's owner and group.
#pragma once

#include <span>
#include <string>

#include "dbase/system/file_status.h"

namespace dbase {

/// Whether a user who is in these groups may write the file. Root always may.
[[nodiscard]] bool mayWrite(const FileStatus& file, std::uint32_t user,
                            std::span<const std::uint32_t> groups);

/// Whether everybody who may write the companion may write the table; its owner is not considered.
[[nodiscard]] bool isNoWiderThan(const FileStatus& companion, const FileStatus& table);

struct Access {
    std::uint32_t mode = 0; // without an access list
    std::string accessList; // empty if the mode alone says it
};

/// The table's access, for a file that has an owner and group of its own. Where an access list cannot be
/// stored, the mode alone gives less.
[[nodiscard]] Access accessOfCompanion(const FileStatus& table, std::uint32_t owner, std::uint32_t group);

} // namespace dbase
