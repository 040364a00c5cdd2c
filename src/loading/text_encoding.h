// Files that are not written in UTF-8.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "loading/text_source.h"

namespace loading {

/// How the characters of a file are written.
enum class TextEncoding {
    Utf8,        // with or without its mark
    Windows1252, // as Windows calls ANSI in western Europe
    Utf16,       // with its mark, which tells the order of the bytes
};

/// By its usual name, letter case ignored: utf-8, windows-1252, utf-16. Null for any other.
[[nodiscard]] std::optional<TextEncoding> textEncodingNamed(std::string_view name);

/// The text of a source in UTF-8. `name` is what errors call it. Errors: Failure for a mark of another
/// encoding, a missing mark, what is no UTF-16; whatever the source raises.
[[nodiscard]] TextSource decoded(TextSource source, TextEncoding encoding, const std::string& name);

} // namespace loading
