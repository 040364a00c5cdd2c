// A typed word, compared once with every distinct word of the names.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "suggest/Folding.h"
#include "suggest/NameView.h"
#include "suggest/Prices.h"
#include "suggest/SlipCount.h"

namespace ambrel::suggest {

/// The price of taking a word of a name for what was typed.
struct WordPrice {
    Price price = price::impossible;
    /// Of a short form that no list knows: it counts only beside another word that matches.
    bool isShortForm = false;

    [[nodiscard]] bool isPossible() const { return price != price::impossible; }
};

class ComparedWord {
public:
    /// `mayBeBeginning`: whether more letters may follow. Notes the words with a price in `near`.
    ComparedWord(NameWord word, bool mayBeBeginning, const NameView& view, std::vector<bool>& near);

    [[nodiscard]] const NameWord& word() const { return word_; }
    [[nodiscard]] WordPrice priceOf(ViewWord word) const { return prices_[word]; }
    /// The price if the name has no such word.
    [[nodiscard]] Price unmatched() const { return unmatched_; }

private:
    [[nodiscard]] WordPrice compare(const NamePool& pool, WordNumber other) const;
    [[nodiscard]] bool mayBeNear(const PooledWord& other) const;
    [[nodiscard]] Price slipPrice(const NamePool& pool, WordNumber other) const;
    [[nodiscard]] Price digitsPrice(std::string_view other) const;
    [[nodiscard]] Price shortFormPrice(std::string_view other) const;
    [[nodiscard]] Price priceUnmatched(double rarity) const;

    NameWord word_;
    std::string sound_;
    SlipCount slips_, soundSlips_;
    std::uint64_t letters_;           // of the sound
    unsigned most_, mostInBeginning_; // slips
    bool mayBeBeginning_, isDigits_;
    Price unmatched_ = 0;
    std::vector<WordPrice> prices_; // by word of the view
};

} // namespace ambrel::suggest
