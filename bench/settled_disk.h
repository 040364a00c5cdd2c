// A measurement that begins with nothing left to be written, and with memory at hand.
#pragma once

#include <cstddef>

#include <benchmark/benchmark.h>
#include <sys/mman.h>
#include <unistd.h>

namespace bench {

/// What was written before is not measured.
inline void settleDisk(benchmark::State& state) {
    state.PauseTiming();
    sync();
    state.ResumeTiming();
}

/// The host of a virtual machine has to find memory for pages that have not been used for a while, which may
/// take as long as what is measured. So a GiB is used and freed before: files get the same pages.
inline void settleMemory(benchmark::State& state) {
    constexpr std::size_t size = std::size_t{1} << 30, page = 4096;
    state.PauseTiming();
    void* const memory = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (memory != MAP_FAILED) {
        madvise(memory, size, MADV_HUGEPAGE); // as large as those of large files
        for (std::size_t at = 0; at < size; at += page) {
            static_cast<volatile char*>(memory)[at] = 1;
        }
        munmap(memory, size);
    }
    state.ResumeTiming();
}

} // namespace bench
