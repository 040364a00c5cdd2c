// Checks and encodes UTF-8.
#include "loading/utf8.h"

#include "dbase/system/quoted.h"

namespace loading {

bool isUtf8(std::string_view text) {
    while (!text.empty()) {
        const std::string_view character = dbase::firstCharacter(text);
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

} // namespace loading
