// How often this program has waited for the disk.
#pragma once

namespace ambrel::test {

/// The number so far. Calling it makes the program count each fdatasync(), the shared library's too.
[[nodiscard]] int diskWaits();

} // namespace ambrel::test
