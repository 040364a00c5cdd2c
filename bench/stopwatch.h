// The time that a piece of work takes, for benchmarks with manual timing.
#pragma once

#include <chrono>

namespace bench {

/// Runs the work once. Returns its time in seconds.
template<typename Work>
[[nodiscard]] double secondsOf(Work&& work) {
    const auto begin = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

} // namespace bench
