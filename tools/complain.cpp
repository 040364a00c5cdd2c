// Writes messages to standard error.
#include "tools/complain.h"

#include <algorithm>
#include <cstdio>

namespace ambcp {

void complain(std::string_view text) {
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find('\n'));
        std::fprintf(stderr, "ambcp: %.*s\n", static_cast<int>(line.size()), line.data());
        text.remove_prefix(std::min(line.size() + 1, text.size()));
    }
}

} // namespace ambcp
