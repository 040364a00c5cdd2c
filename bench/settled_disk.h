// A measurement that begins with nothing left to be written.
#pragma once

#include <benchmark/benchmark.h>
#include <unistd.h>

namespace bench {

/// What was written before is not measured.
inline void settleDisk(benchmark::State& state) {
    state.PauseTiming();
    sync();
    state.ResumeTiming();
}

} // namespace bench
