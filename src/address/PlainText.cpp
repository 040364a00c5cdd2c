// Dropping accents.
#include "address/PlainText.h"

#include "suggest/Letters.h"

namespace ambrel {

std::string withoutAccents(std::string_view text) {
    std::string plain(text);
    for (char& c : plain) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte >= 0xC0 && byte != 0xC7 && byte != 0xD1) {
            if (const char letter = suggest::foldedLetter(c); letter > suggest::dropped) {
                c = letter;
            }
        }
    }
    return plain;
}

bool hasSameLetters(std::string_view a, std::string_view b) {
    std::size_t i = 0, j = 0;
    const auto next = [](std::string_view text, std::size_t& at) {
        while (at < text.size()) {
            const char letter = suggest::foldedLetter(text[at++]);
            if (letter != 0 && letter != suggest::dropped) {
                return letter;
            }
        }
        return '\0';
    };
    for (;;) {
        const char one = next(a, i);
        if (one != next(b, j)) {
            return false;
        }
        if (one == '\0') {
            return true;
        }
    }
}

} // namespace ambrel
