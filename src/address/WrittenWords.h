// An address as words, with what separates them.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "suggest/WordLists.h"

namespace ambrel {

/// What may stand between two words; one bit each.
enum class Separator : std::uint8_t {
    Blank = 1,
    Hyphen = 2,
    Slash = 4,
    Open = 8, // a bracket
    Apostrophe = 16,
    Apart = 32 // a comma, a line end, a dash, a bracket: what follows is another piece
};

/// A word, a number, or a number with letters: "Calle", "12", "12B", "3º". "S/N" and "P.I." are one word.
struct WrittenWord {
    std::size_t begin = 0, end = 0;            // in the source
    std::string folded;                        // capitals without accents
    const suggest::WordEntry* entry = nullptr; // null if no list has it
    std::uint8_t before = 0;                   // Separator: between it and the word before
    std::uint8_t digits = 0;                   // how many it begins with
    bool isOrdinal = false;                    // "3º", "3er"
    bool isFraction = false;                   // "12,5", "12.500"

    [[nodiscard]] bool follows(Separator what) const {
        return (before & static_cast<std::uint8_t>(what)) != 0;
    }
    [[nodiscard]] bool is(suggest::AddressRole role) const { return entry != nullptr && entry->has(role); }
    [[nodiscard]] bool isSmall() const { return entry != nullptr && entry->isSmall; }
    [[nodiscard]] bool isLetter() const { return digits == 0 && folded.size() == 1; }
    /// What follows the digits of "12B".
    [[nodiscard]] std::string_view letters() const { return std::string_view(folded).substr(digits); }
    /// Up to four digits, perhaps with a letter or "BIS".
    [[nodiscard]] bool isHouseNumber() const;
};

/// Some of an address's words: from `first` to the one before `last`.
struct WordRange {
    std::size_t first = 0, last = 0;

    [[nodiscard]] bool isEmpty() const { return first >= last; }
    [[nodiscard]] std::size_t size() const { return isEmpty() ? 0 : last - first; }
    friend bool operator==(const WordRange&, const WordRange&) = default;
};

class WrittenWords {
public:
    /// Text in Windows-1252; it is not copied.
    explicit WrittenWords(std::string_view source);

    [[nodiscard]] std::size_t size() const { return words_.size(); }
    [[nodiscard]] const WrittenWord& operator[](std::size_t index) const { return words_[index]; }
    [[nodiscard]] WordRange all() const { return {0, words_.size()}; }

    /// The words as written, with the closing bracket of an open one.
    [[nodiscard]] std::string_view text(WordRange range) const;
    /// With the full stops and slashes that follow: "Avda.", "C/".
    [[nodiscard]] std::string_view textWithStop(WordRange range) const;
    /// Whether a character follows a word immediately.
    [[nodiscard]] bool isFollowedBy(std::size_t index, char character) const;

private:
    void readWord(std::size_t& at);
    void readNumber(WrittenWord& word, std::size_t& at) const;
    void readLetters(WrittenWord& word, std::size_t& at) const;
    void readInitials(WrittenWord& word, std::size_t& at) const;
    void readNoNumber(WrittenWord& word, std::size_t& at) const;
    [[nodiscard]] bool isLetterAt(std::size_t index) const;
    void separate(std::size_t gapBegin, std::size_t gapEnd);

    std::string_view source_;
    std::vector<WrittenWord> words_;
    std::uint8_t gap_ = 0;
};

} // namespace ambrel
