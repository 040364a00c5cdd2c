// Aligning the words of a text with those of many names.
#include "suggest/NameMatch.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <span>

#include "suggest/Letters.h"
#include "suggest/PreparedReading.h"

namespace ambrel::suggest {
namespace {

/// Words of a name after these are not looked at.
constexpr std::size_t mostUses = 32;
/// Points above which only the writing differs.
constexpr double sameName = 0.9;

struct Verdict {
    unsigned cost = price::impossible;
    bool isSame = false; // nothing but the writing differs
    bool isBeginning = false;

    [[nodiscard]] bool isPossible() const { return cost < price::impossible; }
};

/// Takes the words of a name for those of a reading, one by one.
class Alignment {
public:
    Alignment(const NameView& view, const PreparedReading& reading, std::size_t place)
        : view_(view), reading_(reading), name_(view.names()[place]), uses_(view.uses(place)) {
        uses_ = uses_.first(std::min(uses_.size(), mostUses));
        cost_ = reading.extra;
    }

    [[nodiscard]] Verdict run() {
        for (const ComparedWord* word : reading_.words) {
            take(*word);
        }
        if (!isAny_) {
            return {};
        }
        chargeOmitted();
        if (!isSame_) {
            chargeSmallWords();
        }
        if (isBegun_ && inOrder_ && reading_.isOpen) {
            chargeSmallLetters();
        }
        return {cost_, isSame_, inOrder_ && reading_.isOpen};
    }

private:
    void take(const ComparedWord& word) {
        unsigned best = price::impossible;
        std::size_t at = 0;
        bool isShortForm = false;
        for (std::size_t i = 0; i < uses_.size(); ++i) {
            const WordPrice here = word.priceOf(uses_[i].word());
            // Of equal words, the one that is expected.
            const unsigned cost = here.price + (i == next_ ? 0U : 1U);
            if (here.isPossible() && (used_ >> i & 1U) == 0 && cost < best) {
                best = cost;
                at = i;
                isShortForm = here.isShortForm;
            }
        }
        if (best > word.unmatched() + unsigned{price::mostExtra} ||
            (word.word().role == WordRole::Small && best >= price::slip)) {
            leave(word);
            return;
        }
        best -= at == next_ ? 0U : 1U;
        isBegun_ = &word == reading_.words.back() && best >= price::beginning && best < price::slip;
        if (uses_[at].role() == WordRole::Appended && word.word().role == WordRole::Appended) {
            best /= 4; // still the same name
        } else {
            isSame_ = isSame_ && best < price::beginning;
        }
        isAny_ = isAny_ || !isShortForm;
        used_ |= 1U << at;
        cost_ += best + (at < next_ ? price::order : 0U);
        inOrder_ = inOrder_ && at == next_;
        next_ = at + 1;
    }

    void leave(const ComparedWord& word) {
        if (&word == reading_.words.back() && reading_.endsSmall) {
            const std::uint8_t bits = smallWordBits(word.word().literal);
            if ((view_.pool().smallWords(name_) & bits) != bits) {
                cost_ += price::lastSmallWord;
                isSame_ = false;
            }
            return;
        }
        cost_ += word.unmatched();
        isSame_ = inOrder_ = false;
    }

    void chargeOmitted() {
        unsigned omitted = 0;
        for (std::size_t i = 0; i < uses_.size(); ++i) {
            if ((used_ >> i & 1U) != 0) {
                continue;
            }
            const bool isAppended = uses_[i].role() == WordRole::Appended;
            if (inOrder_ && reading_.isOpen && !isAppended) {
                isBegun_ = true;
                const unsigned length = view_.pool().word(view_.words()[uses_[i].word()]).length;
                cost_ += price::missingWord + price::missingLetter * std::min(length, 12U);
            } else {
                cost_ += priceOmitted(uses_[i], omitted);
            }
            ++omitted;
            isSame_ = isSame_ && isAppended;
        }
    }

    [[nodiscard]] unsigned priceOmitted(WordUse use, unsigned before) const {
        switch (use.role()) {
        case WordRole::Appended:
            return price::omittedAppended;
        case WordRole::Title:
        case WordRole::Type:
            return price::omittedTitle;
        default:
            break;
        }
        const double whole = price::omittedWord + price::omittedRarity * view_.rarity(use.word());
        return static_cast<unsigned>(before == 0 ? whole : whole * price::omittedFurther);
    }

    void chargeSmallWords() {
        for (const std::uint8_t bits : reading_.smallWords) {
            cost_ += (view_.pool().smallWords(name_) & bits) == bits ? 0U : price::smallWord;
        }
    }

    /// The letters of small words that an unfinished text leaves out are still to come, like all others.
    void chargeSmallLetters() {
        unsigned rest = static_cast<unsigned>(view_.pool().joined(name_).size());
        for (const WordUse& use : uses_) {
            const unsigned length = view_.pool().word(view_.words()[use.word()]).length;
            rest -= use.role() == WordRole::Appended ? 0U : std::min(rest, length);
        }
        cost_ += price::missingLetter * (rest - std::min(rest, reading_.smallLetters));
    }

    const NameView& view_;
    const PreparedReading& reading_;
    NameNumber name_;
    std::span<const WordUse> uses_;
    std::uint32_t used_ = 0;
    std::size_t next_ = 0; // where the next word of the text is expected
    unsigned cost_ = 0;
    bool isSame_ = true, inOrder_ = true, isAny_ = false;
    bool isBegun_ = false; // the last word is not finished, or others follow
};

/// Compares the letters without the blanks: words written together, apart, or with a slip in a small one.
Verdict compareJoined(const NamePool& pool, const PreparedReading& reading, NameNumber name) {
    const std::size_t length = reading.joined.size();
    const unsigned most = length >= 10 ? 3 : length >= 6 ? 2 : length >= 4 ? 1 : 0;
    // A slip changes one letter, and two pairs, or three if it exchanges letters.
    if (bitCount(reading.letterSet & ~pool.letters(name)) > most ||
        bitCount(reading.pairs & ~pool.pairs(name)) > 2 * most + 1) {
        return {};
    }
    const std::string_view joined = pool.joined(name);
    if (joined.size() + most < length) {
        return {};
    }
    const SlipCount::Found found = reading.joinedSlips.to(joined);
    Verdict verdict;
    if (found.whole <= most) {
        verdict = {reading.extra + found.whole * price::slip + price::joining +
                       (reading.hasAppended ? price::appended : 0U),
                   found.whole == 0, false};
    }
    if (reading.isOpen && found.beginning <= most && length > 2 * found.beginning) {
        const auto lacks =
            static_cast<unsigned>(std::min<std::size_t>(joined.size() - found.beginsLength, 20));
        const unsigned cost = found.beginning * price::slip + price::beginning +
                              (found.beginning != 0 ? price::slipInBeginning : 0U) +
                              lacks * price::missingLetter;
        if (cost < verdict.cost) {
            verdict = {cost, false, true};
        }
    }
    return verdict;
}

/// Among names at the same number of slips, the one that has more in common with the text is the likelier.
unsigned unlikeness(const NamePool& pool, const PreparedReading& reading, const NameMatch& match) {
    const std::uint64_t pairs = pool.pairs(match.name);
    const unsigned common = bitCount(reading.pairs & pairs), typed = bitCount(reading.pairs);
    const double all = match.isBeginning ? typed : (typed + bitCount(pairs)) / 2.0;
    const double share = all > 0 ? common / all : 1.0;
    const std::string_view joined = pool.joined(match.name);
    const bool isFirst =
        !joined.empty() && !reading.joined.empty() && joined.front() == reading.joined.front();
    return static_cast<unsigned>(price::unsharedPairs * (1 - share)) + (isFirst ? 0U : price::firstLetter);
}

double pointsOf(const PreparedReading& reading, unsigned cost, bool isSame) {
    return isSame ? 1 - std::min(0.09, cost / 1000.0)
                  : std::max(0.0, 0.9 * (1 - 0.85 * cost / (100 * reading.letters)));
}

/// Whether joining the words of both would only repeat the comparison of their words.
bool isJoinedAlready(const NamePool& pool, const PreparedReading& reading, NameNumber name) {
    return reading.isPlain && pool.uses(name).size() == 1 && pool.smallWords(name) == 0;
}

/// The small words that only one of two names has.
unsigned smallWordsApart(const std::vector<NameWord>& one, const std::vector<NameWord>& other) {
    const auto smallWordsOf = [](const std::vector<NameWord>& words) {
        std::multiset<std::string_view> small;
        for (const NameWord& word : words) {
            if (word.role == WordRole::Small) {
                small.insert(word.literal);
            }
        }
        return small;
    };
    const auto ones = smallWordsOf(one), others = smallWordsOf(other);
    std::vector<std::string_view> apart;
    std::ranges::set_symmetric_difference(ones, others, std::back_inserter(apart));
    return static_cast<unsigned>(apart.size());
}

/// The best reading of the text as a name; no points if there is none.
NameMatch matchOne(const NameView& view, const PreparedReadings& prepared, std::size_t place) {
    const NamePool& pool = view.pool();
    const NameNumber name = view.names()[place];
    const bool isNear = std::ranges::any_of(view.uses(place),
                                            [&](const WordUse& use) { return prepared.isNear(use.word()); });
    NameMatch match;
    match.name = name;
    unsigned cost = 0;
    bool isSame = false;
    for (const PreparedReading& reading : prepared.readings()) {
        Verdict verdict = isNear ? Alignment(view, reading, place).run() : Verdict();
        if (verdict.cost > price::joining && !isJoinedAlready(pool, reading, name)) {
            const Verdict joined = compareJoined(pool, reading, name);
            if (joined.cost < verdict.cost) {
                verdict = joined;
            }
        }
        const double points = verdict.isPossible() ? pointsOf(reading, verdict.cost, verdict.isSame) : 0;
        if (points > match.points) {
            match.points = points;
            match.reading = reading.number;
            match.isBeginning = verdict.isBeginning;
            cost = verdict.cost;
            isSame = verdict.isSame;
        }
    }
    if (match.points > 0 && !isSame) {
        const PreparedReading& reading = prepared.readings()[match.reading];
        match.points = pointsOf(reading, cost + unlikeness(pool, reading, match), false);
    }
    return match;
}

/// How far the writing of a name is from what was typed: articles that only one of them has, then letters.
unsigned writingApart(const NamePool& pool, const TypedName& typed, const NameMatch& match) {
    const TypedStreet::Reading& reading = typed.readings[match.reading];
    std::vector<NameWord> words(typed.words.begin() + static_cast<std::ptrdiff_t>(reading.first),
                                typed.words.begin() + static_cast<std::ptrdiff_t>(reading.last));
    const std::string_view stored = pool.stored(match.name);
    const unsigned articles = smallWordsApart(words, foldName(stored));
    std::ranges::sort(words, {}, &NameWord::begin);
    std::string letters;
    for (const NameWord& word : words) {
        letters += word.literal;
    }
    return 100 * articles + std::min(99U, SlipCount(letters).to(foldLetters(stored)).whole);
}

} // namespace

std::vector<NameMatch> matchNames(const NameView& view, const TypedName& typed, double least) {
    const PreparedReadings prepared(view, typed.words, typed.readings);
    std::vector<NameMatch> matches;
    for (std::size_t place = 0; place < view.names().size(); ++place) {
        NameMatch match = matchOne(view, prepared, place);
        if (match.points >= least) {
            const PreparedReading& reading = prepared.readings()[match.reading];
            match.farness = match.points > sameName
                                ? writingApart(view.pool(), typed, match)
                                : reading.joinedSlips.to(view.pool().joined(match.name)).whole;
            matches.push_back(match);
        }
    }
    return matches;
}

} // namespace ambrel::suggest
