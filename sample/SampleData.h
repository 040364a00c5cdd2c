// The files of this folder, compiled in; EmbedFiles.cmake writes the definitions.
#pragma once

#include <span>
#include <string_view>

namespace ambrel {

/// UTF-8, including its name.
struct SampleFile {
    std::string_view name;
    std::span<const unsigned char> bytes;

    [[nodiscard]] std::string_view text() const {
        return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
    }
};

/// The tables: "MUNICIPI.csv" and so on.
[[nodiscard]] std::span<const SampleFile> tableFiles();
/// The contents of the folder POSTALES, each with its folder: "LA RIOJA/ALFARO.xml".
[[nodiscard]] std::span<const SampleFile> postalesFiles();

} // namespace ambrel
