// The official files as they come: by themselves or inside a ZIP.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "loading/failure.h"
#include "loading/text_source.h"

namespace ambrel::directory {

/// A file that can be read, as often as wanted.
struct OfficialFile {
    std::string name; // what messages call it: the path, followed by ": " and the entry's name inside a ZIP
    std::string baseName;   // without folder or ZIP; says what kind of file it is
    std::string edition;    // AAAA-MM-DD, from its name or that of the ZIP; empty if neither says one
    std::uint64_t size = 0; // in bytes, unpacked
    std::function<loading::TextSource()> open; // Errors: loading::Failure
    std::string path = {};                     // of one that is not packed; else empty
};

/// The files at a path: itself, or those that it holds if it is a ZIP. Errors: loading::Failure if it cannot
/// be read, is damaged, or is an empty ZIP.
[[nodiscard]] std::vector<OfficialFile> officialFiles(const std::string& path);

} // namespace ambrel::directory
