// Comparing a written name with a stored one, word by word.
#include "address/NameLikeness.h"

#include <algorithm>
#include <optional>

#include "suggest/Folding.h"
#include "suggest/Letters.h"
#include "suggest/SlipCount.h"

namespace ambrel {
namespace {

using suggest::NameWord;
using Words = std::vector<NameWord>;

Words countingWords(std::string_view name) {
    Words words = suggest::foldName(name);
    std::erase_if(words, [](const NameWord& word) { return !suggest::counts(word.role); });
    return words;
}

std::string allLetters(std::string_view name) {
    std::string letters;
    for (const NameWord& word : suggest::foldName(name)) {
        letters += word.literal;
    }
    return letters;
}

bool isNumeral(const NameWord& word) {
    return word.number != 0 || std::ranges::any_of(word.text, suggest::isDigit);
}

/// Whether a word changes the meaning whatever letters it stands between: a numeral, a letter.
bool standsAlone(const NameWord& word) { return isNumeral(word) || word.literal.size() == 1; }

bool isSameWord(const NameWord& a, const NameWord& b) {
    if (a.text == b.text || a.literal == b.literal) {
        return true;
    }
    // "5" is Quinto and Quinta, but these are two names.
    return a.number != 0 && a.number == b.number && suggest::SlipCount(a.text).to(b.text).whole > 1;
}

/// Slips that a word may have and still be recognised.
unsigned mostSlips(std::size_t length) { return length <= 1 ? 0 : length <= 3 ? 1 : length <= 7 ? 2 : 3; }

std::optional<unsigned> slipsBetween(const NameWord& written, const NameWord& stored) {
    if (isSameWord(written, stored)) {
        return 0;
    }
    if ((isNumeral(written) || isNumeral(stored)) && written.number != stored.number) {
        return std::nullopt;
    }
    const unsigned slips = suggest::SlipCount(written.text).to(stored.text).whole;
    return slips <= mostSlips(std::min(written.text.size(), stored.text.size())) ? std::optional(slips)
                                                                                 : std::nullopt;
}

/// Whether two words may be forms of one: a plural, or another ending.
bool isInflection(std::string_view a, std::string_view b) {
    const std::string_view shorter = a.size() < b.size() ? a : b, longer = a.size() < b.size() ? b : a;
    if (shorter.empty()) {
        return false;
    }
    if (longer.size() == shorter.size()) {
        return longer.substr(0, longer.size() - 1) == shorter.substr(0, shorter.size() - 1);
    }
    return longer.size() - shorter.size() <= 2 && longer.starts_with(shorter);
}

/// Takes each written word for the stored one that is nearest, in the order of nearness.
class WordPairs {
public:
    WordPairs(const Words& written, const Words& stored)
        : written_(written), stored_(stored), isTaken_(stored.size()) {}

    NameLikeness run() {
        likeness_.kind = NameLikeness::Kind::Writing;
        for (const NameWord& word : written_) {
            pair(word);
        }
        if (std::ranges::count(isTaken_, false) > 0) {
            likeness_.kind = NameLikeness::Kind::Part;
        }
        return likeness_;
    }

private:
    void pair(const NameWord& word) {
        std::optional<unsigned> best;
        std::size_t at = 0;
        for (std::size_t i = 0; i < stored_.size(); ++i) {
            const auto slips = isTaken_[i] ? std::nullopt : slipsBetween(word, stored_[i]);
            if (slips && (!best || *slips < *best)) {
                best = slips;
                at = i;
            }
        }
        if (!best) {
            likeness_.kind = NameLikeness::Kind::Part;
            return;
        }
        isTaken_[at] = true;
        if (*best == 0) {
            return;
        }
        if (likeness_.kind == NameLikeness::Kind::Writing) {
            likeness_.kind = NameLikeness::Kind::Slips;
        }
        likeness_.slips += *best;
        likeness_.words.push_back(word.text);
        likeness_.isInflected = likeness_.isInflected || isInflection(word.text, stored_[at].text);
        const std::size_t length = std::min(word.text.size(), stored_[at].text.size());
        likeness_.shortest = likeness_.shortest == 0 ? length : std::min(likeness_.shortest, length);
    }

    const Words& written_;
    const Words& stored_;
    std::vector<bool> isTaken_;
    NameLikeness likeness_;
};

} // namespace

NameLikeness compareNames(std::string_view written, std::string_view stored) {
    const std::string letters = allLetters(written), others = allLetters(stored);
    NameLikeness likeness;
    if (letters != others) {
        const Words words = countingWords(written), storedWords = countingWords(stored);
        likeness = WordPairs(words, storedWords).run();
        // Words written together or apart, with a slip.
        if (likeness.kind == NameLikeness::Kind::Part && letters.size() >= 6 &&
            std::ranges::none_of(words, standsAlone) && std::ranges::none_of(storedWords, standsAlone) &&
            suggest::SlipCount(letters).to(others).whole == 1) {
            likeness = {.kind = NameLikeness::Kind::Slips, .slips = 1, .shortest = letters.size()};
        }
    }
    likeness.letters = letters.size();
    return likeness;
}

} // namespace ambrel
