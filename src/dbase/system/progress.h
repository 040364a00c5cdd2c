// Progress of a long operation.
#pragma once

#include <cstdint>
#include <functional>

namespace dbase {

/// Called now and then, and at the end, with the work done and the total, in the same unit. May be empty.
using Progress = std::function<void(std::uint64_t done, std::uint64_t total)>;

} // namespace dbase
