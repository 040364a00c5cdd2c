// Memory that is used all over.
#pragma once

#include <cstddef>

namespace dbase {

/// Asks the system to keep a large array in large pages, before it is used: there is less to wait for than in
/// hundreds of thousands of small ones.
void preferLargePages(void* begin, std::size_t bytes) noexcept;

} // namespace dbase
