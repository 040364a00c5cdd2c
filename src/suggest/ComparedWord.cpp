// Comparing words.
#include "suggest/ComparedWord.h"

#include <algorithm>

#include "suggest/Letters.h"

namespace ambrel::suggest {
namespace {

/// The slips that a word may have and still be taken for another.
unsigned mostSlips(std::size_t length) { return length <= 1 ? 0 : length <= 3 ? 1 : length <= 6 ? 2 : 3; }

/// The same for the beginning of a word, of which there are many more.
unsigned mostSlipsInBeginning(std::size_t length) { return length <= 2 ? 0 : length <= 5 ? 1 : 2; }

bool isSubsequence(std::string_view part, std::string_view whole) {
    std::size_t at = 0;
    for (const char letter : whole) {
        at += at < part.size() && part[at] == letter ? 1 : 0;
    }
    return at == part.size();
}

bool isVowel(char letter) { return std::string_view("AEIOU").find(letter) != std::string_view::npos; }

/// Whether two words are equal but for doubled letters.
bool equalUndoubled(std::string_view a, std::string_view b) {
    const auto next = [](std::string_view text, std::size_t at) {
        const char letter = text[at];
        while (at < text.size() && text[at] == letter) {
            ++at;
        }
        return at;
    };
    std::size_t i = 0, j = 0;
    while (i < a.size() && j < b.size() && a[i] == b[j]) {
        i = next(a, i);
        j = next(b, j);
    }
    return i == a.size() && j == b.size();
}

} // namespace

ComparedWord::ComparedWord(NameWord word, bool mayBeBeginning, const NameView& view, std::vector<bool>& near)
    : word_(std::move(word)), sound_(soundOf(word_.text)), slips_(word_.text), soundSlips_(sound_),
      letters_(letterBits(sound_)), most_(mostSlips(word_.text.size())),
      mostInBeginning_(mostSlipsInBeginning(word_.text.size())), mayBeBeginning_(mayBeBeginning),
      isDigits_(isDigit(word_.text.front())), prices_(view.words().size()) {
    unmatched_ = priceUnmatched(view.rarityInPool(view.pool().find(word_.text)));
    for (ViewWord other = 0; other < prices_.size(); ++other) {
        prices_[other] = compare(view.pool(), view.words()[other]);
        if (prices_[other].isPossible()) {
            near[other] = true;
        }
    }
}

Price ComparedWord::priceUnmatched(double rarity) const {
    if (word_.role == WordRole::Title) {
        return price::unmatchedTitle;
    }
    const std::size_t length = std::min<std::size_t>(word_.text.size(), 255);
    const double letters = std::max(static_cast<double>(length), word_.number != 0 ? 2.5 : 1.0);
    const double share = word_.role == WordRole::Appended ? 0.25 : 0.35 + 0.45 * rarity;
    return static_cast<Price>(letters * price::slip * share);
}

WordPrice ComparedWord::compare(const NamePool& pool, WordNumber other) const {
    const PooledWord& pooled = pool.word(other);
    const std::string_view text = pool.text(other);
    if (word_.number != 0 && word_.number == pooled.number) {
        return {text == word_.text ? Price{0} : price::numeral};
    }
    if (isDigits_ || isDigit(text.front())) {
        return {digitsPrice(text)};
    }
    WordPrice best;
    if (mayBeNear(pooled)) {
        best.price = slipPrice(pool, other);
    }
    if (best.price > price::initial && text.front() == word_.text.front()) {
        if (const Price shortForm = shortFormPrice(text); shortForm < best.price) {
            best = {shortForm, true};
        }
    }
    return best;
}

/// Rules out most words by their letters and lengths alone.
bool ComparedWord::mayBeNear(const PooledWord& other) const {
    const unsigned missing = bitCount(letters_ & ~other.letters);
    const std::size_t length = sound_.size();
    if (missing > most_ || other.soundLength + most_ < length) {
        return false;
    }
    if (mayBeBeginning_ && missing <= mostInBeginning_) {
        return true;
    }
    return other.soundLength <= length + most_ && bitCount(other.letters & ~letters_) <= most_;
}

Price ComparedWord::slipPrice(const NamePool& pool, WordNumber other) const {
    const std::string_view text = pool.text(other);
    const SlipCount::Found plain = slips_.to(text);
    unsigned best = price::impossible;
    const unsigned sounds =
        plain.whole == 0 || plain.whole > most_ + 3 ? plain.whole : soundSlips_.to(pool.sound(other)).whole;
    const unsigned slips = std::min(plain.whole, sounds);
    if (slips <= most_) {
        best = slips * price::slip + std::min(plain.whole - slips, 2U) * price::likeness;
        if (slips == 1 && equalUndoubled(text, word_.text)) {
            best = price::likeness;
        }
    }
    if (mayBeBeginning_ && plain.beginning <= mostInBeginning_) {
        const std::size_t lacks = text.size() - std::min<std::size_t>(text.size(), plain.beginsLength);
        const unsigned begun = plain.beginning * price::slip + price::beginning +
                               (plain.beginning != 0 ? price::slipInBeginning : 0U) +
                               static_cast<unsigned>(std::min<std::size_t>(lacks, 12)) * price::missingLetter;
        best = std::min(best, begun);
    }
    return static_cast<Price>(best);
}

/// A digit more or less is another number.
Price ComparedWord::digitsPrice(std::string_view other) const {
    if (other == word_.text) {
        return 0;
    }
    const bool isBeginning = mayBeBeginning_ && isDigits_ && other.starts_with(word_.text);
    return isBeginning ? Price{price::beginning + price::missingLetter} : price::impossible;
}

Price ComparedWord::shortFormPrice(std::string_view other) const {
    const std::string_view text = word_.text;
    if (text.size() == 1 || other.size() == 1) {
        return price::initial;
    }
    const std::string_view shorter = text.size() < other.size() ? text : other;
    const std::string_view longer = text.size() < other.size() ? other : text;
    if (shorter.size() >= 4 && longer.starts_with(shorter)) {
        return price::cutOff;
    }
    const bool isContracted = longer.size() >= shorter.size() + 2 && shorter.back() == longer.back() &&
                              std::ranges::none_of(shorter.substr(1), isVowel) &&
                              isSubsequence(shorter, longer);
    return isContracted ? price::contracted : price::impossible;
}

} // namespace ambrel::suggest
