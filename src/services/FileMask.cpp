// Matching by characters rather than bytes, so that ? also stands for an accented letter.
#include "services/FileMask.h"

#include <filesystem>
#include <string>

#include "dbase/dbf/codepage.h"

namespace ambrel {
namespace {

char32_t capital(char32_t character) {
    const dbase::CodePage& page = dbase::CodePage::windows1252();
    const auto byte = page.encode(character);
    return byte ? page.decode(page.upper(*byte)) : character;
}

/// A name on disk need not be UTF-8; if it is not, each byte counts as a character.
std::u32string capitals(std::string_view text) {
    std::u32string characters;
    try {
        characters = std::filesystem::path(text).u32string();
    } catch (const std::filesystem::filesystem_error&) {
        for (const char c : text) {
            characters.push_back(static_cast<unsigned char>(c));
        }
    }
    for (char32_t& character : characters) {
        character = capital(character);
    }
    return characters;
}

/// Backtracks to the last star only: a later star never needs an earlier one to take more than it did.
bool matches(std::u32string_view name, std::u32string_view mask) {
    std::size_t n = 0, m = 0;
    std::size_t star = std::u32string_view::npos, resume = 0;
    while (n < name.size()) {
        if (m < mask.size() && mask[m] == U'*') {
            star = m++;
            resume = n;
        } else if (m < mask.size() && (mask[m] == U'?' || mask[m] == name[n])) {
            ++m;
            ++n;
        } else if (star != std::u32string_view::npos) {
            m = star + 1;
            n = ++resume;
        } else {
            return false;
        }
    }
    return mask.find_first_not_of(U'*', m) == std::u32string_view::npos;
}

} // namespace

bool matchesMask(std::string_view name, std::string_view mask) {
    return mask == "*.*" || matches(capitals(name), capitals(mask));
}

} // namespace ambrel
