// Numbering and counting the words of some names.
#include "suggest/NameView.h"

#include <algorithm>
#include <cmath>

namespace ambrel::suggest {

NameView::NameView(const NamePool& pool, std::vector<NameNumber> names)
    : pool_(&pool), names_(std::move(names)) {
    std::vector<std::uint32_t> counts(pool.wordCount());
    for (const NameNumber name : names_) {
        for (const WordUse& use : pool.uses(name)) {
            ++counts[use.word()];
        }
    }
    const double all = static_cast<double>(names_.size()) + 1;
    for (WordNumber word = 0; word < counts.size(); ++word) {
        if (counts[word] != 0) {
            const double share = std::log(all / counts[word]) / std::log(all);
            rarity_.push_back(static_cast<std::uint8_t>(std::clamp(share * 255, 1.0, 255.0)));
            counts[word] = static_cast<std::uint32_t>(words_.size()); // from here on, its number
            words_.push_back(word);
        }
    }
    firstUses_.reserve(names_.size() + 1);
    for (const NameNumber name : names_) {
        firstUses_.push_back(static_cast<std::uint32_t>(uses_.size()));
        for (const WordUse& use : pool.uses(name)) {
            uses_.emplace_back(counts[use.word()], use.role());
        }
    }
    firstUses_.push_back(static_cast<std::uint32_t>(uses_.size()));
}

double NameView::rarityInPool(WordNumber word) const {
    const auto found = std::ranges::lower_bound(words_, word);
    return found != words_.end() && *found == word ? rarity(static_cast<ViewWord>(found - words_.begin()))
                                                   : 1.0;
}

std::size_t NameView::bytes() const {
    return names_.capacity() * sizeof(NameNumber) + firstUses_.capacity() * sizeof(std::uint32_t) +
           uses_.capacity() * sizeof(WordUse) + words_.capacity() * sizeof(WordNumber) + rarity_.capacity();
}

} // namespace ambrel::suggest
