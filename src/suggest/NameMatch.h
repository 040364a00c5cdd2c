// Comparing what was typed with many names.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "suggest/Folding.h"
#include "suggest/NamePool.h"

namespace ambrel::suggest {

/// Some names of a pool, with the words in them and how much each says there.
class NameView {
public:
    NameView(const NamePool& pool, std::vector<NameNumber> names);

    [[nodiscard]] const NamePool& pool() const { return *pool_; }
    [[nodiscard]] const std::vector<NameNumber>& names() const { return names_; }
    [[nodiscard]] const std::vector<WordNumber>& words() const { return words_; }
    /// From 0 to 1: how rare a word is among the names; 1 for one that they do not have.
    [[nodiscard]] double rarity(WordNumber word) const {
        return word < rarity_.size() && rarity_[word] != 0 ? rarity_[word] / 255.0 : 1.0;
    }
    [[nodiscard]] bool has(WordNumber word) const { return word < rarity_.size() && rarity_[word] != 0; }
    [[nodiscard]] std::size_t bytes() const;

private:
    const NamePool* pool_;
    std::vector<NameNumber> names_;
    std::vector<WordNumber> words_;
    std::vector<std::uint8_t> rarity_; // by word; 0: not among the names
};

/// A name that what was typed may mean.
struct NameMatch {
    NameNumber name = 0;
    double points = 0;
    std::uint16_t reading = 0; // which reading of the text it is
    bool isBeginning = false;  // the text is the beginning of the name
    std::uint32_t farness = 0; // slips between the letters as they stand, to order equal points
};

/// A text to compare names with: its words, and the readings of them.
struct TypedName {
    const std::vector<NameWord>& words;
    std::vector<TypedStreet::Reading> readings;
};

/// The names with at least `least` points, in no order.
[[nodiscard]] std::vector<NameMatch> matchNames(const NameView& view, const TypedName& typed, double least);

} // namespace ambrel::suggest
