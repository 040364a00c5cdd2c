// Counting the words of some names.
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
    rarity_.assign(pool.wordCount(), 0);
    const double all = static_cast<double>(names_.size()) + 1;
    for (WordNumber word = 0; word < counts.size(); ++word) {
        if (counts[word] != 0) {
            words_.push_back(word);
            const double share = std::log(all / counts[word]) / std::log(all);
            rarity_[word] = static_cast<std::uint8_t>(std::clamp(share * 255, 1.0, 255.0));
        }
    }
}

std::size_t NameView::bytes() const {
    return names_.capacity() * sizeof(NameNumber) + words_.capacity() * sizeof(WordNumber) +
           rarity_.capacity();
}

} // namespace ambrel::suggest
