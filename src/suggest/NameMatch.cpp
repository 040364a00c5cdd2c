// Aligning the words of a text with those of many names.
//
// Differences are counted in hundredths of a slip (one letter wrong, missing, added or exchanged with its
// neighbour). What is typed is a name with slips, without some of its words, or its beginning; each of these
// has a price, and the points are what is left of the letters typed.
#include "suggest/NameMatch.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>

#include "suggest/Letters.h"
#include "suggest/SlipCount.h"

namespace ambrel::suggest {
namespace {

using Price = std::uint16_t;
constexpr Price impossible = 0xFFFF;

namespace price {
constexpr Price slip = 100;
constexpr Price likeness = 22;     // a letter in place of one that sounds the same
constexpr Price numeral = 8;       // "2" for "Dos"
constexpr Price beginning = 30;    // the last word is not finished,
constexpr Price missingLetter = 2; // for each letter that it lacks
constexpr Price initial = 45;      // "F." for "Federico"
constexpr Price cutOff = 70;       // the name holds only the beginning of the word
constexpr Price shortened = 90;    // "Mtnz" for "Martinez"
constexpr Price order = 12;        // words in another order
constexpr Price joining = 10;      // words written together, or apart
constexpr Price number = 6;        // the text ends with a house number
} // namespace price

constexpr std::size_t mostWords = 12;

std::size_t mostSlips(std::size_t length) { return length <= 1 ? 0 : length <= 3 ? 1 : length <= 6 ? 2 : 3; }

bool isSubsequence(std::string_view part, std::string_view whole) {
    std::size_t at = 0;
    for (const char letter : whole) {
        at += at < part.size() && part[at] == letter ? 1 : 0;
    }
    return at == part.size();
}

/// A word of the text, compared with every word of the view.
class ComparedWord {
public:
    ComparedWord(const NameWord& word, bool mayBeBeginning, const NameView& view)
        : word_(word), sound_(soundOf(word.text)), slips_(word.text), soundSlips_(sound_),
          letters_(letterBits(sound_)), mayBeBeginning_(mayBeBeginning),
          isDigits_(std::ranges::all_of(word.text, isDigit)) {
        prices_.assign(view.pool().wordCount(), impossible);
        const WordNumber itself = view.pool().find(word.text);
        isKnown_ = view.has(itself);
        rarity_ = view.rarity(isKnown_ ? itself : static_cast<WordNumber>(prices_.size()));
        for (const WordNumber other : view.words()) {
            prices_[other] = compare(view.pool(), other);
        }
    }

    [[nodiscard]] Price price(WordNumber word) const { return prices_[word]; }
    /// That the name has no such word.
    [[nodiscard]] Price unmatched() const {
        if (word_.role == WordRole::Small) {
            return 15;
        }
        if (word_.role == WordRole::Title) {
            return 90;
        }
        const double length = static_cast<double>(std::min<std::size_t>(word_.text.size(), 8));
        const double letters = std::max(length, word_.number != 0 ? 2.5 : 1.0);
        const double share = word_.role == WordRole::Appended ? 0.25 : 0.35 + 0.45 * rarity_;
        return static_cast<Price>(letters * 100 * share);
    }
    [[nodiscard]] std::size_t length() const { return word_.text.size(); }

private:
    [[nodiscard]] Price compare(const NamePool& pool, WordNumber other) const {
        const PooledWord& pooled = pool.word(other);
        if (word_.number != 0 && word_.number == pooled.number) {
            return pool.text(other) == word_.text ? 0 : price::numeral;
        }
        const bool isOtherDigits = isDigit(letters(pool, other));
        if (isDigits_ || isOtherDigits) {
            return pool.text(other) == word_.text ? Price{0} : digitsBegin(pool.text(other));
        }
        const std::size_t most = mostSlips(word_.text.size());
        const auto missing = static_cast<std::size_t>(std::popcount(letters_ & ~pooled.letters));
        const auto extra = static_cast<std::size_t>(std::popcount(pooled.letters & ~letters_));
        const bool isFirstEqual = letters(pool, other) == word_.text.front();
        Price best = impossible;
        if (missing <= most + 1 && (mayBeBeginning_ || extra <= most + 1)) {
            best = slipPrice(pool, other, most);
        }
        if (best != 0 && isFirstEqual) {
            best = std::min(best, shortFormPrice(pool.text(other)));
        }
        return best;
    }

    [[nodiscard]] static char letters(const NamePool& pool, WordNumber other) {
        return pool.text(other).front();
    }

    [[nodiscard]] Price digitsBegin(std::string_view other) const {
        return mayBeBeginning_ && other.starts_with(word_.text)
                   ? static_cast<Price>(price::beginning + price::missingLetter)
                   : impossible;
    }

    [[nodiscard]] Price slipPrice(const NamePool& pool, WordNumber other, std::size_t most) const {
        const std::string_view text = pool.text(other);
        const SlipCount::Found plain = slips_.to(text), alike = soundSlips_.to(pool.sound(other));
        Price best = impossible;
        const unsigned slips = std::min(plain.whole, alike.whole);
        if (slips <= most) {
            best =
                static_cast<Price>(slips * price::slip + std::min(plain.whole - slips, 2U) * price::likeness);
            if (slips == 0 && best == 0 && text != word_.text) {
                best = price::likeness;
            }
        }
        const unsigned begun = plain.beginning;
        if (mayBeBeginning_ && begun <= most && word_.text.size() > 2 * begun) {
            const std::size_t lacks = text.size() > plain.beginsLength ? text.size() - plain.beginsLength : 0;
            best =
                std::min(best, static_cast<Price>(begun * price::slip + price::beginning +
                                                  std::min<std::size_t>(lacks, 12) * price::missingLetter));
        }
        return best;
    }

    [[nodiscard]] Price shortFormPrice(std::string_view other) const {
        const std::string& text = word_.text;
        if (text.size() == 1 || other.size() == 1) {
            return price::initial;
        }
        if (other.size() >= 3 && other.size() < text.size() && text.starts_with(other)) {
            return price::cutOff;
        }
        const std::string_view shorter = text.size() < other.size() ? std::string_view(text) : other;
        const std::string_view longer = text.size() < other.size() ? other : std::string_view(text);
        if (shorter.size() >= 2 && shorter.size() * 5 <= longer.size() * 3 + 4 && longer.size() >= 4 &&
            (shorter.back() == longer.back() || longer.starts_with(shorter)) &&
            isSubsequence(shorter, longer)) {
            return price::shortened;
        }
        return impossible;
    }

    const NameWord& word_;
    std::string sound_;
    SlipCount slips_, soundSlips_;
    std::uint64_t letters_;
    bool mayBeBeginning_, isDigits_, isKnown_ = false;
    double rarity_ = 1;
    std::vector<Price> prices_;
};

/// One way of reading the text, ready to be compared with names.
struct PreparedReading {
    std::vector<const ComparedWord*> words; // that count
    std::string joined;
    SlipCount joinedSlips;
    std::uint64_t pairs;
    double letters; // typed, as the measure of all prices
    Price extra;
    std::uint16_t number;
};

struct Verdict {
    unsigned cost = impossible;
    bool isSame = false; // nothing but the writing differs
    bool isBeginning = false;
};

class Comparison {
public:
    Comparison(const NameView& view, const TypedName& typed) : view_(view) {
        compareWords(typed);
        for (std::size_t i = 0; i < typed.readings.size(); ++i) {
            prepare(typed, i);
        }
    }

    [[nodiscard]] std::vector<NameMatch> run(double least) const;

private:
    void compareWords(const TypedName& typed);
    void prepare(const TypedName& typed, std::size_t reading);
    [[nodiscard]] Verdict align(const PreparedReading& reading, NameNumber name) const;
    [[nodiscard]] Verdict compareJoined(const PreparedReading& reading, NameNumber name,
                                        unsigned below) const;
    [[nodiscard]] unsigned omitted(const WordUse& use, unsigned count) const;
    [[nodiscard]] static double points(const PreparedReading& reading, const Verdict& verdict);

    const NameView& view_;
    std::vector<ComparedWord> compared_;
    std::vector<std::size_t> asWhole_, asBeginning_; // by word: its place in compared_
    std::vector<PreparedReading> readings_;
};

void Comparison::compareWords(const TypedName& typed) {
    constexpr std::size_t none = ~std::size_t{0};
    asWhole_.assign(typed.words.size(), none);
    asBeginning_.assign(typed.words.size(), none);
    std::vector<bool> whole(typed.words.size()), begins(typed.words.size());
    for (const TypedStreet::Reading& reading : typed.readings) {
        bool hasContent = false;
        for (std::size_t i = reading.first; i < reading.last; ++i) {
            hasContent = hasContent || counts(typed.words[i].role);
        }
        for (std::size_t i = reading.first; i < reading.last; ++i) {
            if (!hasContent || counts(typed.words[i].role)) {
                const bool isLast = i + 1 == reading.last && reading.number.empty();
                (isLast ? begins : whole)[i] = true;
            }
        }
    }
    compared_.reserve(2 * typed.words.size());
    for (std::size_t i = 0; i < typed.words.size(); ++i) {
        if (whole[i]) {
            asWhole_[i] = compared_.size();
            compared_.emplace_back(typed.words[i], false, view_);
        }
        if (begins[i]) {
            asBeginning_[i] = compared_.size();
            compared_.emplace_back(typed.words[i], true, view_);
        }
    }
}

void Comparison::prepare(const TypedName& typed, std::size_t number) {
    const TypedStreet::Reading& reading = typed.readings[number];
    std::string joined = suggest::joined(typed.words, reading.first, reading.last);
    PreparedReading prepared{{},
                             joined,
                             SlipCount(joined),
                             pairBits(joined),
                             0,
                             reading.number.empty() ? Price{0} : price::number,
                             static_cast<std::uint16_t>(number)};
    bool hasContent = false;
    for (std::size_t i = reading.first; i < reading.last; ++i) {
        hasContent = hasContent || counts(typed.words[i].role);
    }
    for (std::size_t i = reading.first; i < reading.last && prepared.words.size() < mostWords; ++i) {
        if (!hasContent || counts(typed.words[i].role)) {
            const bool isLast = i + 1 == reading.last && reading.number.empty();
            prepared.words.push_back(&compared_[isLast ? asBeginning_[i] : asWhole_[i]]);
        }
    }
    prepared.letters = std::max(4.0, static_cast<double>(joined.size()));
    readings_.push_back(std::move(prepared));
}

unsigned Comparison::omitted(const WordUse& use, unsigned count) const {
    const auto role = use.role();
    if (role == WordRole::Appended) {
        return 25;
    }
    if (role == WordRole::Title || role == WordRole::Type) {
        return 70;
    }
    const double whole = 60 + 90 * view_.rarity(use.word());
    return static_cast<unsigned>(count == 0 ? whole : whole * 0.6);
}

Verdict Comparison::align(const PreparedReading& reading, NameNumber name) const {
    const WordUse* uses = view_.pool().uses(name);
    const std::size_t count = std::min<std::size_t>(view_.pool().useCount(name), 32);
    std::uint32_t used = 0;
    unsigned cost = reading.extra;
    bool isSame = true, inOrder = true, isAny = false;
    std::size_t next = 0; // where the next word of the text is expected
    for (const ComparedWord* word : reading.words) {
        unsigned best = impossible;
        std::size_t at = 0;
        for (std::size_t i = 0; i < count; ++i) {
            const Price here = word->price(uses[i].word());
            if (here != impossible && (used >> i & 1U) == 0) {
                const unsigned moved = here + (i == next ? 0U : 1U);
                if (moved < best) {
                    best = moved;
                    at = i;
                }
            }
        }
        const Price unmatched = word->unmatched();
        if (best == impossible || best > unmatched + 60U) {
            cost += unmatched;
            isSame = false;
            inOrder = false;
            continue;
        }
        best -= at == next ? 0 : 1;
        isAny = true;
        used |= 1U << at;
        cost += best;
        isSame = isSame && best <= 2 * price::likeness && best != price::beginning + price::missingLetter &&
                 best < price::beginning + price::likeness;
        if (best >= price::beginning) {
            isSame = false;
        }
        if (at != next) {
            cost += at < next ? price::order : 0U;
            inOrder = false;
        }
        next = at + 1;
    }
    if (!isAny) {
        return {};
    }
    unsigned left = 0;
    for (std::size_t i = 0; i < count; ++i) {
        if ((used >> i & 1U) == 0) {
            const WordUse use = uses[i];
            if (inOrder && reading.extra == 0 && use.role() != WordRole::Appended) {
                cost += 12 + 2 * std::min<unsigned>(view_.pool().word(use.word()).length, 12);
            } else {
                cost += omitted(use, left);
            }
            ++left;
            isSame = isSame && use.role() == WordRole::Appended;
        }
    }
    return {cost, isSame, inOrder && reading.extra == 0};
}

Verdict Comparison::compareJoined(const PreparedReading& reading, NameNumber name, unsigned below) const {
    const std::string_view joined = view_.pool().joined(name);
    const std::size_t length = reading.joined.size();
    const std::size_t most = length >= 10 ? 3 : length >= 6 ? 2 : length >= 4 ? 1 : 0;
    if (joined.size() + most < length ||
        static_cast<std::size_t>(std::popcount(reading.pairs & ~view_.pool().pairs(name))) > 3 * most) {
        return {};
    }
    const SlipCount::Found found = reading.joinedSlips.to(joined);
    Verdict verdict;
    if (found.whole <= most) {
        verdict.cost = reading.extra + found.whole * price::slip + price::joining;
        verdict.isSame = found.whole == 0;
    }
    if (reading.extra == 0 && found.beginning <= most && length > 2 * found.beginning) {
        const auto lacks =
            static_cast<unsigned>(std::min<std::size_t>(joined.size() - found.beginsLength, 20));
        const unsigned cost = found.beginning * price::slip + price::beginning + lacks * price::missingLetter;
        if (cost < verdict.cost) {
            verdict = {cost, false, true};
        }
    }
    return verdict.cost < below ? verdict : Verdict{};
}

double Comparison::points(const PreparedReading& reading, const Verdict& verdict) {
    if (verdict.isSame) {
        return 1 - std::min(0.09, verdict.cost / 1000.0);
    }
    return std::max(0.0, 0.9 * (1 - 0.85 * verdict.cost / (100 * reading.letters)));
}

std::vector<NameMatch> Comparison::run(double least) const {
    std::vector<NameMatch> matches;
    for (const NameNumber name : view_.names()) {
        NameMatch match;
        match.name = name;
        for (const PreparedReading& reading : readings_) {
            Verdict verdict = align(reading, name);
            if (verdict.cost > price::joining) {
                const Verdict joined = compareJoined(reading, name, verdict.cost);
                if (joined.cost < verdict.cost) {
                    verdict = joined;
                }
            }
            if (verdict.cost < impossible) {
                const double value = points(reading, verdict);
                if (value > match.points) {
                    match.points = value;
                    match.reading = reading.number;
                    match.isBeginning = verdict.isBeginning;
                }
            }
        }
        if (match.points >= least) {
            matches.push_back(match);
        }
    }
    for (NameMatch& match : matches) {
        match.farness = readings_[match.reading].joinedSlips.to(view_.pool().joined(match.name)).whole;
    }
    return matches;
}

} // namespace

NameView::NameView(const NamePool& pool, std::vector<NameNumber> names)
    : pool_(&pool), names_(std::move(names)) {
    std::vector<std::uint32_t> counts(pool.wordCount());
    for (const NameNumber name : names_) {
        for (std::size_t i = 0; i < pool.useCount(name); ++i) {
            ++counts[pool.uses(name)[i].word()];
        }
    }
    rarity_.assign(pool.wordCount(), 0);
    const double all = std::log(static_cast<double>(names_.size()) + 1);
    for (WordNumber word = 0; word < counts.size(); ++word) {
        if (counts[word] != 0) {
            words_.push_back(word);
            const double share = std::log((static_cast<double>(names_.size()) + 1) / counts[word]) / all;
            rarity_[word] = static_cast<std::uint8_t>(std::clamp(share * 255, 1.0, 255.0));
        }
    }
}

std::size_t NameView::bytes() const {
    return names_.capacity() * sizeof(NameNumber) + words_.capacity() * sizeof(WordNumber) +
           rarity_.capacity();
}

std::vector<NameMatch> matchNames(const NameView& view, const TypedName& typed, double least) {
    return Comparison(view, typed).run(least);
}

} // namespace ambrel::suggest
