// Some names of a pool, with the words in them and how rare each is there.
#pragma once

#include <cstdint>
#include <vector>

#include "suggest/NamePool.h"

namespace ambrel::suggest {

/// The pool must outlive it.
class NameView {
public:
    NameView(const NamePool& pool, std::vector<NameNumber> names);

    [[nodiscard]] const NamePool& pool() const { return *pool_; }
    [[nodiscard]] const std::vector<NameNumber>& names() const { return names_; }
    [[nodiscard]] const std::vector<WordNumber>& words() const { return words_; }
    /// Whether one of the names has the word.
    [[nodiscard]] bool has(WordNumber word) const { return word < rarity_.size() && rarity_[word] != 0; }
    /// From 0 to 1: how rare a word is among the names; 1 for one that they do not have.
    [[nodiscard]] double rarity(WordNumber word) const { return has(word) ? rarity_[word] / 255.0 : 1.0; }
    [[nodiscard]] std::size_t bytes() const;

private:
    const NamePool* pool_;
    std::vector<NameNumber> names_;
    std::vector<WordNumber> words_;
    std::vector<std::uint8_t> rarity_; // by word; 0: not among the names
};

} // namespace ambrel::suggest
