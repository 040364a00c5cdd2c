// How far an official row may go beside rows of the users.
#pragma once

#include <span>
#include <vector>

#include "directory/DirectoryChange.h"

namespace ambrel::directory {

/// The numbers that bounds have and others have not: up to two ranges a side, each in bounds of its own.
[[nodiscard]] std::vector<Bounds> numbersOutside(const Bounds& bounds, const Bounds& others);

/// Bounds without the numbers of others. Of each side one range without gaps is left: the one that has most
/// numbers in common with the bounds before, of equals the longest; 0 and 0 if there is none. All bounds are
/// of their sides.
[[nodiscard]] Bounds limited(const Bounds& bounds, std::span<const Bounds> taken, const Bounds& before);

} // namespace ambrel::directory
