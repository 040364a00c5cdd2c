// The CSV files of this folder, compiled in; EmbedCsv.cmake writes the definition.
#pragma once

#include <span>
#include <string_view>

namespace ambrel {

struct SampleFile {
    std::string_view table; // its name
    std::span<const unsigned char> csv;
};

[[nodiscard]] std::span<const SampleFile> sampleFiles();

} // namespace ambrel
