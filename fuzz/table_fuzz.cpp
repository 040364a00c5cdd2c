// Any bytes as a table with its index: opened, walked by every tag, searched, changed.
#include <algorithm>

#include "Trial.h"

/// The first two bytes give the length of the .DBF; the rest is the .MDX.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 2) {
        return 0;
    }
    const char* begin = reinterpret_cast<const char*>(data) + 2;
    const std::size_t length = std::min<std::size_t>(data[0] | std::size_t{data[1]} << 8, size - 2);
    const trial::TableBytes bytes{.records = {begin, begin + length},
                                  .index = {begin + length, begin + (size - 2)}};
    trial::useTable(bytes, false);
    trial::useTable(bytes, true);
    return 0;
}
