// The words that names are written with in several ways, from word_lists.txt.
#pragma once

#include <bitset>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace ambrel::suggest {

/// A set of street types, one bit each.
using TypeSet = std::uint64_t;

/// What a word says in an address besides names; one bit each.
enum class AddressRole : std::uint16_t {
    NumberMark = 1, // "nº"
    NoNumber = 2,   // "s/n"
    Kilometre = 4,
    Suffix = 8,     // "bis"
    Unit = 16,      // "portal", which takes the word after it
    Inside = 32,    // "bajo", which stands alone
    Building = 64,  // "edificio", which takes a name
    Box = 128,      // a post-office box
    CodeMark = 256, // "C.P."
    Country = 512,
    Month = 1024,
    Note = 2048 // "frente a", which takes the words after it
};

/// What is known of a folded word; `full` is empty if it is not a short form.
struct WordEntry {
    std::string full = {};
    std::uint16_t number = 0; // of a numeral; else 0
    std::uint16_t roles = 0;  // AddressRole
    TypeSet types = 0;        // the street types that it names
    bool isSmall = false;     // an article or a preposition
    bool isTitle = false;     // often left out
    bool beginsPair = false;  // with another word after it, it may name a type

    [[nodiscard]] bool has(AddressRole role) const { return (roles & static_cast<std::uint16_t>(role)) != 0; }
};

/// Hashes texts and views alike.
struct TextHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const { return std::hash<std::string_view>()(text); }
};
template<class Value>
using TextMap = std::unordered_map<std::string, Value, TextHash, std::equal_to<>>;

class WordLists {
public:
    /// Those that were compiled in.
    static const WordLists& builtIn();
    /// Reads lists; UTF-8. Errors: std::invalid_argument, naming the line.
    explicit WordLists(std::string_view text);

    /// What is known of a folded word; null for any other.
    [[nodiscard]] const WordEntry* find(std::string_view folded) const;
    /// The types that two words name together.
    [[nodiscard]] TypeSet typesOf(std::string_view first, std::string_view second) const;
    /// The types that a table usually means by a code.
    [[nodiscard]] TypeSet typesOfCode(std::string_view code) const;
    /// The usual short form of a word in capitals; empty if it has none.
    [[nodiscard]] std::string_view shortFormOf(std::string_view word) const;
    /// The name, in Windows-1252, of the type that the statistics office abbreviates so; empty for any other.
    [[nodiscard]] std::string_view officialType(std::string_view abbreviation) const;
    /// Names of provinces in Windows-1252, and their codes.
    [[nodiscard]] const std::vector<std::pair<std::string, std::string>>& provinces() const {
        return provinces_;
    }

private:
    void take(std::string_view section, std::string_view line);
    void takeType(std::string_view rest);

    TextMap<WordEntry> words_;
    std::bitset<4096> beginnings_; // of these words: says of most others, which are names, that they are not
    TextMap<TypeSet> pairs_, codes_;
    TextMap<std::string> shortForms_, officialTypes_;
    std::vector<std::pair<std::string, std::string>> provinces_;
    unsigned typeCount_ = 0;
};

/// The text of word_lists.txt; generated.
[[nodiscard]] std::string_view builtInWordLists();

} // namespace ambrel::suggest
