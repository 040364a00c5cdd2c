// How a CSV file is written, recognised by its beginning.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "loading/text_encoding.h"
#include "loading/text_source.h"

namespace loading {

/// Encoding and separator of a file.
struct CsvFormat {
    TextEncoding encoding = TextEncoding::Utf8;
    bool hasMark = false;     // at its start
    bool isBigEndian = false; // if UTF-16
    char separator = ',';
};

/// Bytes by which a format is recognised.
inline constexpr std::size_t formatSampleSize = std::size_t{1} << 20;

/// Recognises the format of a file by its beginning. A mark decides about the encoding, otherwise whether
/// more of the letters that are not ASCII are UTF-8 than are not; the separator is the most frequent one in
/// the first row, and for a single column the first of , ; tab | that stands nowhere. What is given is not
/// recognised. `name`: what errors call the file. Errors: Failure for bytes that are not text.
[[nodiscard]] CsvFormat recogniseFormat(std::string_view sample, const std::string& name,
                                        std::optional<TextEncoding> encoding = {},
                                        std::optional<char> separator = {});

/// The first bytes of a source; it then continues with them.
[[nodiscard]] std::string peek(TextSource& source, std::size_t size = formatSampleSize);

/// UTF-8 in UTF-16, without a mark.
[[nodiscard]] std::string utf16FromUtf8(std::string_view text, bool isBigEndian);

/// Its usual name, as `textEncodingNamed` takes it.
[[nodiscard]] std::string_view textEncodingName(TextEncoding encoding);

} // namespace loading
