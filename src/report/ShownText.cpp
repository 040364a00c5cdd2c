// Replaces what a page must not hold.
#include "report/ShownText.h"

#include "dbase/system/quoted.h"
#include "report/SpanishNumbers.h"

namespace report {

namespace {

constexpr std::string_view notShown = "\uFFFD", lineBreak = "↵";

char32_t codeOf(std::string_view character) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(character[i]); };
    switch (character.size()) {
    case 1:
        return byte(0);
    case 2:
        return (byte(0) & 0x1Fu) << 6 | (byte(1) & 0x3Fu);
    case 3:
        return (byte(0) & 0x0Fu) << 12 | (byte(1) & 0x3Fu) << 6 | (byte(2) & 0x3Fu);
    default:
        return (byte(0) & 0x07u) << 18 | (byte(1) & 0x3Fu) << 12 | (byte(2) & 0x3Fu) << 6 | (byte(3) & 0x3Fu);
    }
}

bool isBetween(char32_t code, char32_t first, char32_t last) { return code >= first && code <= last; }

bool breaksLine(char32_t code) {
    return isBetween(code, '\n', '\r') || code == 0x85 || code == 0x2028 || code == 0x2029;
}

/// Control characters, what is not a character, and marks that nobody sees: two texts that look the same
/// should be the same, and a name must not turn the text around it.
bool hasNoShape(char32_t code) {
    return code < ' ' || isBetween(code, 0x7F, 0x9F) || code == 0xAD || code == 0x61C ||
           isBetween(code, 0x200B, 0x200F) || isBetween(code, 0x202A, 0x202E) ||
           isBetween(code, 0x2060, 0x206F) || code == 0xFEFF || isBetween(code, 0xFFF9, 0xFFFB) ||
           isBetween(code, 0xFDD0, 0xFDEF) || (code & 0xFFFE) == 0xFFFE || isBetween(code, 0xE0000, 0xE0FFF);
}

std::string_view shown(std::string_view character) {
    if (character.empty()) {
        return notShown;
    }
    const char32_t code = codeOf(character);
    return code == '\t' ? " " : breaksLine(code) ? lineBreak : hasNoShape(code) ? notShown : character;
}

} // namespace

std::string shownText(std::string_view utf8, std::size_t mostCharacters) {
    std::string text;
    std::size_t count = 0;
    while (!utf8.empty()) {
        const std::string_view character = dbase::firstCharacter(utf8);
        const std::size_t size = utf8.starts_with("\r\n") ? 2 : character.empty() ? 1 : character.size();
        if (count < mostCharacters) {
            text += shown(character);
        }
        ++count;
        utf8.remove_prefix(size);
    }
    return count <= mostCharacters ? text : text + cutMark(count);
}

std::string cutMark(std::size_t characters) { return "… (" + grouped(characters) + " caracteres)"; }

} // namespace report
