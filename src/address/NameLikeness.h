// How a written name differs from one of the tables.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace ambrel {

/// The difference between a written name and a stored one.
struct NameLikeness {
    enum class Kind {
        Same,    // the same letters, whatever stands between them
        Writing, // the same words: written out or not, numerals, articles, another order
        Slips,   // letters wrong, missing, added or exchanged
        Part     // words too many or missing, or another number
    };
    Kind kind = Kind::Same;
    unsigned slips = 0;
    std::size_t letters = 0;  // of the written name
    bool isInflected = false; // only the end of a word differs, as in ROSA and ROSAS, PINO and PINA
    std::vector<std::string> words = {}; // the folded words with slips, as written
    std::size_t shortest = 0;            // length of the shortest of them
};

/// Compares two names. Texts in Windows-1252.
[[nodiscard]] NameLikeness compareNames(std::string_view written, std::string_view stored);

} // namespace ambrel
