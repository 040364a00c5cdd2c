// The time that a piece of work takes, for benchmarks that time by hand.
#pragma once

#include <chrono>

namespace bench {

/// Runs it once.
template<typename Work>
[[nodiscard]] double secondsOf(Work&& work) {
    const auto begin = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

} // namespace bench
