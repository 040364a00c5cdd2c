// A clock that costs a few nanoseconds: for limits of a few milliseconds, checked in every read.
#pragma once

#include <chrono>
#include <ctime>

namespace dbase {

/// Monotonic, in steps of a few milliseconds.
[[nodiscard]] inline std::chrono::nanoseconds coarseNow() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC_COARSE, &now);
    return std::chrono::seconds(now.tv_sec) + std::chrono::nanoseconds(now.tv_nsec);
}

} // namespace dbase
