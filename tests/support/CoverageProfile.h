// What a forked process must do before it ends without its exit handlers, so that scripts/coverage counts
// its work.
#pragma once

#include <sys/resource.h>

/// From the compiler's coverage runtime; absent in every other build.
extern "C" int __llvm_profile_write_file() __attribute__((weak));

namespace ambrel::test {

/// Writes nothing where the process may only write short files: half a profile would spoil them all.
inline void keepCoverage() {
    if (&__llvm_profile_write_file == nullptr) {
        return;
    }
    rlimit limit = {};
    getrlimit(RLIMIT_FSIZE, &limit);
    limit.rlim_cur = limit.rlim_max;
    if (limit.rlim_max == RLIM_INFINITY && setrlimit(RLIMIT_FSIZE, &limit) == 0) {
        static_cast<void>(__llvm_profile_write_file());
    }
}

} // namespace ambrel::test
