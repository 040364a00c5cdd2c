// Some names of a pool, with the words in them and how rare each is there.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "suggest/NamePool.h"

namespace ambrel::suggest {

/// The number of a word within a view, from 0: a town's streets have few of a province's words.
using ViewWord = std::uint32_t;

/// The pool must outlive it.
class NameView {
public:
    /// `names`: distinct.
    NameView(const NamePool& pool, std::vector<NameNumber> names);

    [[nodiscard]] const NamePool& pool() const { return *pool_; }
    [[nodiscard]] const std::vector<NameNumber>& names() const { return names_; }
    /// The words that count in the name at a place of names(), numbered within the view.
    [[nodiscard]] std::span<const WordUse> uses(std::size_t place) const {
        return {uses_.data() + firstUses_[place], firstUses_[place + 1] - firstUses_[place]};
    }
    /// The words of the names, as the pool numbers them.
    [[nodiscard]] const std::vector<WordNumber>& words() const { return words_; }
    /// From 0 to 1: how rare a word is among the names.
    [[nodiscard]] double rarity(ViewWord word) const { return rarity_[word] / 255.0; }
    /// The same for a word of the pool; 1 for one that the names do not have.
    [[nodiscard]] double rarityInPool(WordNumber word) const;
    [[nodiscard]] std::size_t bytes() const;

private:
    const NamePool* pool_;
    std::vector<NameNumber> names_;
    std::vector<std::uint32_t> firstUses_; // by place, and one more
    std::vector<WordUse> uses_;
    std::vector<WordNumber> words_; // ascending
    std::vector<std::uint8_t> rarity_;
};

} // namespace ambrel::suggest
