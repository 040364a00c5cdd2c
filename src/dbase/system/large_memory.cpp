// Asks for large pages.
#include "dbase/system/large_memory.h"

#include <cstdint>

#include <sys/mman.h>

namespace dbase {

void preferLargePages(void* begin, std::size_t bytes) noexcept {
    constexpr std::uintptr_t large = std::uintptr_t{2} << 20;
    const auto first = (reinterpret_cast<std::uintptr_t>(begin) + large - 1) / large * large;
    const auto end = (reinterpret_cast<std::uintptr_t>(begin) + bytes) / large * large;
    if (first < end) { // refused, the memory is as any other
        static_cast<void>(madvise(reinterpret_cast<void*>(first), end - first, MADV_HUGEPAGE));
    }
}

} // namespace dbase
