// The number of a file, where it outlives a restart of the machine.
#pragma once

#include <cstdint>

#include "dbase/system/file.h"

namespace dbase {

/// The inode of a file; 0 on file systems that draw another one at each mount (FAT, FUSE, SMB).
[[nodiscard]] std::uint64_t lastingInode(const File& file);

} // namespace dbase
