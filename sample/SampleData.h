// The files of this folder, compiled in; EmbedCsv.cmake and EmbedPostales.cmake write the definitions.
#pragma once

#include <span>
#include <string_view>

namespace ambrel {

struct SampleFile {
    std::string_view table; // its name
    std::span<const unsigned char> csv;
};

[[nodiscard]] std::span<const SampleFile> sampleFiles();

/// A file of the folder POSTALES.
struct PostalesFile {
    std::string_view name; // UTF-8, with its folder: "LA RIOJA/ALFARO.xml"
    std::span<const unsigned char> utf8;
};

[[nodiscard]] std::span<const PostalesFile> postalesFiles();

} // namespace ambrel
