// Shows text from outside in messages.
#include "dbase/system/quoted.h"

namespace dbase {

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

std::string inQuotes(std::string_view text, std::size_t mostCharacters) {
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

} // namespace dbase
