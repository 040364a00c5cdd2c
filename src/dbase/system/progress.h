// How far a long operation has come.
#pragma once

#include <cstdint>
#include <functional>

namespace dbase {

/// Is told now and then, and at the end, how much of all is done; both in the same unit. May be empty.
using Progress = std::function<void(std::uint64_t done, std::uint64_t total)>;

} // namespace dbase
