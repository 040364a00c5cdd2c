// How far the load of an edition is.
#pragma once

#include <cstdint>
#include <functional>
#include <string_view>

namespace ambrel::directory {

/// One of the steps of a load, such as a file that is read.
struct LoadingStep {
    std::string_view task;
    std::uint64_t done = 0; // lines or rows
    double share = -1;      // 0 to 1; below 0 where it is not known
};

/// Called often enough for a person to follow, and to end a load: what it throws leaves the tables as they
/// were. It is not called any more once they are being exchanged.
using LoadingProgress = std::function<void(const LoadingStep&)>;

} // namespace ambrel::directory
