// A name taken apart into folded words.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "suggest/WordLists.h"

namespace ambrel::suggest {

/// What a word is to its name.
enum class WordRole : std::uint8_t {
    Plain,
    Small,    // an article or a preposition
    Title,    // often left out
    Type,     // a street type at the beginning of a name
    Appended, // in brackets after the name: a village
};

struct NameWord {
    std::string literal; // folded as it stands
    std::string text;    // written out if it is a short form
    WordRole role = WordRole::Plain;
    std::uint16_t number = 0;          // of a numeral or of digits; else 0
    std::size_t begin = 0, length = 0; // in the source
};

/// The words of a name, small ones included. Text in Windows-1252.
[[nodiscard]] std::vector<NameWord> foldName(std::string_view name);

/// Whether a role makes a word count in a comparison.
[[nodiscard]] inline bool counts(WordRole role) { return role != WordRole::Small; }

/// The words without blanks between them, as they stand, except appended ones.
[[nodiscard]] std::string joined(const std::vector<NameWord>& words, std::size_t first, std::size_t last);

/// A street as typed: it may begin or end with its type and end with a house number.
struct TypedStreet {
    std::vector<NameWord> words;
    TypeSet types = 0; // all that the type words at its beginning and end name
    /// The words that may be the name. The first reading is the whole text.
    struct Reading {
        std::size_t first, last; // last: one past it
        TypeSet types;           // that the words before it name
        std::string number;      // what follows it, in the source
    };
    std::vector<Reading> readings;
};
[[nodiscard]] TypedStreet readStreet(std::string_view typed);

} // namespace ambrel::suggest
