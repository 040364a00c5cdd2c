// Blanks and capitals of typed texts.
#include "address/TidyText.h"

#include <array>

#include "dbase/dbf/codepage.h"

namespace ambrel {
namespace {

/// What each byte of Windows-1252 becomes; all that are blank become one.
std::array<char, 256> makeTidyBytes() {
    std::array<char, 256> bytes{};
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        bytes[i] = static_cast<char>(dbase::CodePage::windows1252().upper(static_cast<unsigned char>(i)));
    }
    for (const char blank : {'\t', '\n', '\v', '\f', '\r', '\xA0'}) {
        bytes[static_cast<unsigned char>(blank)] = ' ';
    }
    return bytes;
}

} // namespace

std::string tidied(std::string_view text) {
    static const std::array<char, 256> bytes = makeTidyBytes();
    std::string tidy(text.size(), ' ');
    std::size_t size = 0;
    for (const char c : text) {
        const char tidyByte = bytes[static_cast<unsigned char>(c)];
        if (tidyByte != ' ' || (size > 0 && tidy[size - 1] != ' ')) {
            tidy[size++] = tidyByte;
        }
    }
    if (size > 0 && tidy[size - 1] == ' ') {
        --size;
    }
    tidy.resize(size);
    return tidy;
}

} // namespace ambrel
