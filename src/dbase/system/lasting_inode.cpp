// Asks the file system of a file's path which kind it is.
#include "dbase/system/lasting_inode.h"

#include <linux/magic.h>
#include <sys/vfs.h>

namespace dbase {

std::uint64_t lastingInode(const File& file) {
    constexpr long exFat = 0x2011BAB0, cifs = 0xFF534D42; // missing from some versions of the system's header
    struct statfs system = {};
    if (statfs(file.path().c_str(), &system) == 0) {
        const auto type = static_cast<long>(static_cast<unsigned int>(system.f_type));
        if (type == MSDOS_SUPER_MAGIC || type == exFat || type == FUSE_SUPER_MAGIC ||
            type == SMB_SUPER_MAGIC || type == SMB2_SUPER_MAGIC || type == cifs) {
            return 0;
        }
    }
    return file.status().inode;
}

} // namespace dbase
