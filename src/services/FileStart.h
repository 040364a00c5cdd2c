// Reading files that are small when they are what they should be.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace ambrel {

/// The first `most` bytes of a plain file, all of a shorter one. Null when it cannot be read or is no plain
/// file: a pipe would keep the reader waiting, a device has no end. `reason`: is told why, in Spanish.
[[nodiscard]] std::optional<std::string> fileStart(const std::string& path, std::size_t most,
                                                   std::string* reason = nullptr);

} // namespace ambrel
