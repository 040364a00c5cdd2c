// Folded names packed one after the other, each distinct word once.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "suggest/Folding.h"

namespace ambrel::suggest {

/// Numbers of names and words, from 0.
using NameNumber = std::uint32_t;
using WordNumber = std::uint32_t;

/// A distinct word of the names.
struct PooledWord {
    std::uint32_t text, sound;
    std::uint8_t length, soundLength;
    std::uint16_t number;  // of a numeral
    std::uint64_t letters; // of the sound, one bit each
};

/// A word in its place in a name.
class WordUse {
public:
    WordUse(WordNumber word, WordRole role) : packed_(word << 3 | static_cast<std::uint32_t>(role)) {}
    [[nodiscard]] WordNumber word() const { return packed_ >> 3; }
    [[nodiscard]] WordRole role() const { return static_cast<WordRole>(packed_ & 7U); }

private:
    std::uint32_t packed_;
};

class NamePool {
public:
    /// Adds a name as stored (Windows-1252). Equal names may be added more than once.
    NameNumber add(std::string_view stored);

    [[nodiscard]] std::size_t nameCount() const { return names_.size(); }
    [[nodiscard]] std::size_t wordCount() const { return words_.size(); }
    [[nodiscard]] std::string_view stored(NameNumber name) const;
    /// The words that count, in order.
    [[nodiscard]] std::span<const WordUse> uses(NameNumber name) const {
        return {uses_.data() + names_[name].uses, names_[name].useCount};
    }
    /// Which small words it has, as bits of a hash.
    [[nodiscard]] std::uint8_t smallWords(NameNumber name) const { return names_[name].smallWords; }
    /// All its words without blanks, as they stand; appended ones left out.
    [[nodiscard]] std::string_view joined(NameNumber name) const;
    /// Which pairs of letters follow one another in it, as bits of a hash.
    [[nodiscard]] std::uint64_t pairs(NameNumber name) const { return names_[name].pairs; }
    /// Which letters it has, one bit each.
    [[nodiscard]] std::uint64_t letters(NameNumber name) const { return names_[name].letters; }

    [[nodiscard]] const PooledWord& word(WordNumber word) const { return words_[word]; }
    [[nodiscard]] std::string_view text(WordNumber word) const {
        return {&letters_[words_[word].text], words_[word].length};
    }
    [[nodiscard]] std::string_view sound(WordNumber word) const {
        return {&letters_[words_[word].sound], words_[word].soundLength};
    }
    /// The word with this text; `wordCount()` if no name has it.
    [[nodiscard]] WordNumber find(std::string_view text) const;

    /// Call when all names have been added.
    void finish();
    [[nodiscard]] std::size_t bytes() const;

private:
    struct Name {
        std::uint32_t stored, joined, uses;
        std::uint8_t storedLength, joinedLength, useCount, smallWords;
        std::uint64_t pairs, letters;
    };
    WordNumber pool(const NameWord& word);

    std::string letters_; // of words and names
    std::vector<PooledWord> words_;
    std::vector<Name> names_;
    std::vector<WordUse> uses_;
    TextMap<WordNumber> numbers_;
};

/// The bit of a small word.
[[nodiscard]] std::uint8_t smallWordBits(std::string_view folded);
/// The bits of the pairs of letters in a text.
[[nodiscard]] std::uint64_t pairBits(std::string_view folded);
/// The bits of the letters in a text.
[[nodiscard]] std::uint64_t letterBits(std::string_view folded);

} // namespace ambrel::suggest
