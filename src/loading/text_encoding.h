// Files that are not written in UTF-8.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "loading/text_source.h"

namespace loading {

/// Encoding of a file.
enum class TextEncoding {
    Utf8,        // with or without its mark
    Windows1252, // what Windows calls ANSI in western Europe
    Utf16,       // with its mark, which gives the byte order
};

/// Finds an encoding by its usual name, letter case ignored: utf-8, windows-1252, utf-16. Null for any other.
[[nodiscard]] std::optional<TextEncoding> textEncodingNamed(std::string_view name);

/// The text of a source in UTF-8. `name`: what errors call it. Errors: Failure for a mark of another
/// encoding, a missing mark, or invalid UTF-16; anything the source throws.
[[nodiscard]] TextSource decoded(TextSource source, TextEncoding encoding, const std::string& name);

} // namespace loading
