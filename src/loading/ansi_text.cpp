// Converts between UTF-8 and Windows-1252, letter by letter where something does not fit.
#include "loading/ansi_text.h"

#include <algorithm>
#include <array>

#include "dbase/dbf/codepage.h"
#include "dbase/system/quoted.h"

namespace loading {

namespace {

bool isAscii(std::string_view text) {
    return std::ranges::none_of(text, [](char c) { return static_cast<unsigned char>(c) >= 0x80; });
}

/// An accent as a character of its own, with the letters that it joins and what they become.
struct Accent {
    std::string_view mark, plain, accented;
};
constexpr std::array<Accent, 6> accents{{
    {"\xCC\x80", "AEIOUaeiou", "\xC0\xC8\xCC\xD2\xD9\xE0\xE8\xEC\xF2\xF9"},
    {"\xCC\x81", "AEIOUYaeiouy", "\xC1\xC9\xCD\xD3\xDA\xDD\xE1\xE9\xED\xF3\xFA\xFD"},
    {"\xCC\x82", "AEIOUaeiou", "\xC2\xCA\xCE\xD4\xDB\xE2\xEA\xEE\xF4\xFB"},
    {"\xCC\x83", "ANOano", "\xC3\xD1\xD5\xE3\xF1\xF5"},
    {"\xCC\x88", "AEIOUaeiou", "\xC4\xCB\xCF\xD6\xDC\xE4\xEB\xEF\xF6\xFC"},
    {"\xCC\xA7", "Cc", "\xC7\xE7"},
}};

/// Puts an accent on the last letter, if it is one and the code page has the letter.
bool join(std::string& text, std::string_view mark) {
    const auto accent = std::ranges::find(accents, mark, &Accent::mark);
    const std::size_t letter =
        accent == accents.end() || text.empty() ? std::string_view::npos : accent->plain.find(text.back());
    if (letter == std::string_view::npos) {
        return false;
    }
    text.back() = accent->accented[letter];
    return true;
}

} // namespace

std::optional<std::string> ansiFromUtf8(std::string_view text) {
    if (isAscii(text)) {
        return std::string(text);
    }
    const dbase::CodePage& page = dbase::CodePage::windows1252();
    if (auto bytes = page.fromUtf8(text)) {
        return bytes;
    }
    std::string bytes;
    while (!text.empty()) {
        const std::string_view character = dbase::firstCharacter(text);
        if (character.empty()) {
            return std::nullopt;
        }
        if (!join(bytes, character)) {
            bytes += page.fromUtf8(character).value_or("?");
        }
        text.remove_prefix(character.size());
    }
    return bytes;
}

std::string utf8FromAnsi(std::string_view text) {
    return isAscii(text) ? std::string(text) : dbase::CodePage::windows1252().toUtf8(text);
}

} // namespace loading
