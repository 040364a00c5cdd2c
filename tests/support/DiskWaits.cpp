// Counts the waits for the disk.
#include "DiskWaits.h"

#include <sys/syscall.h>
#include <unistd.h>

namespace {
int waits = 0;
}

/// Replaces the system's routine, for a shared library as well.
extern "C" [[gnu::visibility("default")]] int fdatasync(int file) {
    ++waits;
    return static_cast<int>(syscall(SYS_fdatasync, file));
}

namespace ambrel::test {

int diskWaits() { return waits; }

} // namespace ambrel::test
