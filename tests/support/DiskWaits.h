// How often this program has waited for the disk.
#pragma once

namespace ambrel::test {

/// So far. A program that asks counts each fdatasync(), the shared library's too.
[[nodiscard]] int diskWaits();

} // namespace ambrel::test
