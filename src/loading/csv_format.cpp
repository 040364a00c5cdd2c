// Recognises encoding and separator of CSV files.
#include "loading/csv_format.h"

#include <algorithm>
#include <array>
#include <utility>

#include "dbase/system/quoted.h"
#include "loading/failure.h"

namespace loading {

namespace {

constexpr std::string_view utf8Mark = "\xEF\xBB\xBF";
constexpr std::string_view bigEndianMark = "\xFE\xFF", littleEndianMark = "\xFF\xFE";
constexpr std::string_view separators = ",;\t|";

/// Whether more letters beyond ASCII are UTF-8 than are not.
bool seemsUtf8(std::string_view sample) {
    std::size_t letters = 0, others = 0;
    while (!sample.empty()) {
        if (static_cast<unsigned char>(sample.front()) < 0x80) {
            sample.remove_prefix(1);
            continue;
        }
        const std::size_t size = dbase::firstCharacter(sample).size();
        ++(size > 0 ? letters : others);
        sample.remove_prefix(std::max<std::size_t>(size, 1));
    }
    return letters >= others;
}

/// How often each separator stands in a text outside quotes, up to the end of its first line that has
/// anything, or of all of it.
std::array<std::size_t, separators.size()> countSeparators(std::string_view text, bool onlyFirstLine) {
    std::array<std::size_t, separators.size()> counts{};
    bool isQuoted = false, hasAny = false;
    for (const char c : text) {
        if (c == '\n' && !isQuoted && hasAny && onlyFirstLine) {
            break;
        }
        hasAny = hasAny || (c != '\n' && c != '\r');
        isQuoted = isQuoted != (c == '"');
        const std::size_t which = isQuoted ? std::string_view::npos : separators.find(c);
        if (which != std::string_view::npos) {
            ++counts[which];
        }
    }
    return counts;
}

char recogniseSeparator(std::string_view text) {
    const auto inHeading = countSeparators(text, true);
    const auto most = std::ranges::max_element(inHeading);
    if (*most > 0) {
        return separators[static_cast<std::size_t>(most - inHeading.begin())];
    }
    const auto anywhere = countSeparators(text, false);
    const auto none = std::ranges::find(anywhere, std::size_t{0});
    return none == anywhere.end() ? separators.front()
                                  : separators[static_cast<std::size_t>(none - anywhere.begin())];
}

/// ASCII as it stands, anything else as a sign that separates nothing.
std::string asciiOfUtf16(std::string_view sample, bool isBigEndian) {
    std::string text;
    for (std::size_t i = 0; i + 1 < sample.size(); i += 2) {
        const char low = sample[i + (isBigEndian ? 1 : 0)], high = sample[i + (isBigEndian ? 0 : 1)];
        text += high == 0 && static_cast<unsigned char>(low) < 0x80 ? low : '?';
    }
    return text;
}

} // namespace

CsvFormat recogniseFormat(std::string_view sample, const std::string& name,
                          std::optional<TextEncoding> encoding, std::optional<char> separator) {
    CsvFormat format;
    const bool isUtf16 = sample.starts_with(bigEndianMark) || sample.starts_with(littleEndianMark);
    format.isBigEndian = sample.starts_with(bigEndianMark);
    const bool hasUtf8Mark = sample.starts_with(utf8Mark);
    format.hasMark = isUtf16 || hasUtf8Mark;
    if (encoding) {
        format.encoding = *encoding;
        if (isUtf16 != (*encoding == TextEncoding::Utf16)) {
            throw Failure(name + (isUtf16 ? ": está en UTF-16" : ": no empieza por la marca de UTF-16"));
        }
        if (hasUtf8Mark && *encoding != TextEncoding::Utf8) {
            throw Failure(name + ": está en UTF-8");
        }
    } else if (isUtf16) {
        format.encoding = TextEncoding::Utf16;
    } else {
        format.encoding = hasUtf8Mark || seemsUtf8(sample) ? TextEncoding::Utf8 : TextEncoding::Windows1252;
    }
    if (format.encoding != TextEncoding::Utf16 && sample.find('\0') != std::string_view::npos) {
        throw Failure(name + ": no es un texto, o está en UTF-16 sin su marca");
    }
    if (separator) {
        format.separator = *separator;
    } else if (isUtf16) {
        format.separator = recogniseSeparator(asciiOfUtf16(sample, format.isBigEndian));
    } else {
        format.separator = recogniseSeparator(sample);
    }
    return format;
}

std::string peek(TextSource& source, std::size_t size) {
    std::string sample(size, '\0');
    std::size_t got = 0;
    while (got < size) {
        const std::size_t more = source(std::span(sample).subspan(got));
        if (more == 0) {
            break;
        }
        got += more;
    }
    sample.resize(got);
    source = [sample, given = std::size_t{0}, rest = std::move(source)](std::span<char> room) mutable {
        if (given == sample.size()) {
            return rest(room);
        }
        const std::size_t piece = std::min(room.size(), sample.size() - given);
        std::copy_n(sample.begin() + static_cast<std::ptrdiff_t>(given), piece, room.begin());
        given += piece;
        return piece;
    };
    return sample;
}

std::string utf16FromUtf8(std::string_view text, bool isBigEndian) {
    std::string bytes;
    const auto unit = [&](char32_t value) {
        const char high = static_cast<char>(static_cast<unsigned char>(value >> 8 & 0xFF));
        const char low = static_cast<char>(static_cast<unsigned char>(value & 0xFF));
        bytes += isBigEndian ? high : low;
        bytes += isBigEndian ? low : high;
    };
    while (!text.empty()) {
        const std::string_view character = dbase::firstCharacter(text);
        const std::size_t size = std::max<std::size_t>(character.size(), 1);
        char32_t code = static_cast<unsigned char>(text.front());
        if (size > 1) {
            code &= 0x7FU >> size;
            for (std::size_t i = 1; i < size; ++i) {
                code = code << 6 | (static_cast<unsigned char>(text[i]) & 0x3FU);
            }
        }
        if (code >= 0x10000) {
            unit(0xD800 + ((code - 0x10000) >> 10));
            unit(0xDC00 + ((code - 0x10000) & 0x3FF));
        } else {
            unit(code);
        }
        text.remove_prefix(size);
    }
    return bytes;
}

std::string_view textEncodingName(TextEncoding encoding) {
    switch (encoding) {
    case TextEncoding::Utf8:
        return "utf-8";
    case TextEncoding::Windows1252:
        return "windows-1252";
    case TextEncoding::Utf16:
        break;
    }
    return "utf-16";
}

} // namespace loading
