// Reading files that ought to be small.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace ambrel {

/// The first `most` bytes of a plain file, or all of a shorter one. Null if it cannot be read or is not a
/// plain file: a pipe would block the reader, a device has no end. `reason`: receives why, in Spanish.
[[nodiscard]] std::optional<std::string> fileStart(const std::string& path, std::size_t most,
                                                   std::string* reason = nullptr);

} // namespace ambrel
