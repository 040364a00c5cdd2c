// Checks, encodes and shows UTF-8.
#include "loading/utf8.h"

namespace loading {

namespace {

/// Size in bytes of the character that begins with this byte; 0 if none does.
std::size_t announcedSize(unsigned char lead) {
    return lead < 0x80 ? 1 : lead < 0xC2 ? 0 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : lead < 0xF5 ? 4 : 0;
}

/// True for overlong forms, surrogates, and code points beyond the last one.
bool isForbidden(unsigned char lead, unsigned char second) {
    return (lead == 0xE0 && second < 0xA0) || (lead == 0xED && second > 0x9F) ||
           (lead == 0xF0 && second < 0x90) || (lead == 0xF4 && second > 0x8F);
}

bool isShown(std::string_view character) {
    const auto lead = static_cast<unsigned char>(character.front());
    return character.size() > 1 || (lead >= ' ' && lead != 0x7F);
}

} // namespace

std::string_view firstCharacter(std::string_view text) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const std::size_t size = text.empty() ? 0 : announcedSize(byte(0));
    if (size == 0 || size > text.size()) {
        return {};
    }
    for (std::size_t i = 1; i < size; ++i) {
        if ((byte(i) & 0xC0) != 0x80) {
            return {};
        }
    }
    return size > 1 && isForbidden(byte(0), byte(1)) ? std::string_view() : text.substr(0, size);
}

bool isUtf8(std::string_view text) {
    while (!text.empty()) {
        const std::string_view character = firstCharacter(text);
        if (character.empty()) {
            return false;
        }
        text.remove_prefix(character.size());
    }
    return true;
}

void appendUtf8(std::string& text, char32_t code) {
    const auto byte = [](char32_t value) { return static_cast<char>(static_cast<unsigned char>(value)); };
    if (code < 0x80) {
        text += byte(code);
        return;
    }
    if (code < 0x800) {
        text += byte(0xC0 | code >> 6);
    } else {
        if (code < 0x10000) {
            text += byte(0xE0 | code >> 12);
        } else {
            text += byte(0xF0 | code >> 18);
            text += byte(0x80 | (code >> 12 & 0x3F));
        }
        text += byte(0x80 | (code >> 6 & 0x3F));
    }
    text += byte(0x80 | (code & 0x3F));
}

std::string inQuotes(std::string_view text) {
    constexpr std::size_t mostCharacters = 60;
    constexpr std::string_view notShown = "\uFFFD";
    std::string shown = "«";
    for (std::size_t count = 0; !text.empty(); ++count) {
        if (count == mostCharacters) {
            shown += "…";
            break;
        }
        const std::string_view character = firstCharacter(text);
        shown += character.empty() || !isShown(character) ? notShown : character;
        text.remove_prefix(character.empty() ? 1 : character.size());
    }
    return shown + "»";
}

} // namespace loading
