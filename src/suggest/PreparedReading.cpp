// Preparing the readings of a text.
#include "suggest/PreparedReading.h"

#include <algorithm>

#include "suggest/Letters.h"

namespace ambrel::suggest {
namespace {

/// Longer texts are not names.
constexpr std::size_t mostWords = 12;

} // namespace

PreparedReadings::PreparedReadings(const NameView& view, const std::vector<NameWord>& words,
                                   const std::vector<TypedStreet::Reading>& readings)
    : view_(view), near_(view.words().size()), whole_(words.size()), open_(words.size()) {
    compared_.reserve(2 * words.size());
    for (const TypedStreet::Reading& reading : readings) {
        readings_.push_back(prepare(words, reading));
        readings_.back().number = static_cast<std::uint16_t>(readings_.size() - 1);
    }
}

std::vector<std::size_t> PreparedReadings::comparedIn(const std::vector<NameWord>& words,
                                                      const TypedStreet::Reading& reading) {
    std::vector<std::size_t> places;
    for (std::size_t i = reading.first; i < reading.last && places.size() < mostWords; ++i) {
        if (counts(words[i].role)) {
            places.push_back(i);
        }
    }
    if (places.empty()) {
        for (std::size_t i = reading.first; i < reading.last && places.size() < mostWords; ++i) {
            places.push_back(i);
        }
    } else if (places.back() + 1 < reading.last && reading.number.empty()) {
        places.push_back(reading.last - 1); // perhaps the beginning of another word
    }
    return places;
}

const ComparedWord* PreparedReadings::compared(const NameWord& word, std::size_t place, bool mayBeBeginning) {
    const ComparedWord*& compared = (mayBeBeginning ? open_ : whole_)[place];
    if (compared == nullptr) {
        NameWord one = word;
        if (mayBeBeginning && one.literal.size() == 1) {
            one.text = one.literal; // rather the first letter of something than short for it,
            one.number = isDigit(one.literal.front()) ? one.number : std::uint16_t{0}; // or a figure
        }
        compared = &compared_.emplace_back(std::move(one), mayBeBeginning, view_, near_);
    }
    return compared;
}

void PreparedReadings::takeWords(PreparedReading& prepared, const std::vector<NameWord>& words,
                                 const TypedStreet::Reading& reading,
                                 const std::vector<std::size_t>& places) {
    for (const std::size_t i : places) {
        const bool mayBeBeginning = prepared.isOpen && i + 1 == reading.last;
        prepared.words.push_back(compared(words[i], i, mayBeBeginning));
        prepared.hasAppended = prepared.hasAppended || words[i].role == WordRole::Appended;
    }
    prepared.endsSmall =
        prepared.words.size() > 1 && !counts(words[places.back()].role) && counts(words[places.front()].role);
    for (std::size_t i = reading.first; i < reading.last; ++i) {
        if (std::ranges::binary_search(places, i)) {
            continue;
        }
        if (counts(words[i].role)) { // one of too many
            prepared.extra += price::slip / 2 * static_cast<unsigned>(words[i].literal.size());
        } else {
            prepared.smallWords.push_back(smallWordBits(words[i].literal));
        }
    }
}

PreparedReading PreparedReadings::prepare(const std::vector<NameWord>& words,
                                          const TypedStreet::Reading& reading) {
    PreparedReading prepared;
    prepared.isOpen = reading.number.empty();
    prepared.extra = prepared.isOpen ? Price{0} : price::number;
    const std::vector<std::size_t> places = comparedIn(words, reading);
    takeWords(prepared, words, reading, places);
    // A short form, such as MA for MARIA, may as well be the beginning of another word.
    prepared.isPlain = reading.last - reading.first == 1 &&
                       prepared.words.front()->word().text == words[reading.first].literal;
    prepared.joined = joined(words, reading.first, reading.last);
    prepared.joinedSlips = SlipCount(prepared.joined);
    std::size_t comparedLetters = 0;
    for (const std::size_t i : places) {
        comparedLetters +=
            counts(words[i].role) && words[i].role != WordRole::Appended ? words[i].literal.size() : 0;
    }
    prepared.smallLetters =
        static_cast<unsigned>(prepared.joined.size() - std::min(prepared.joined.size(), comparedLetters));
    prepared.pairs = pairBits(prepared.joined);
    prepared.letterSet = letterBits(prepared.joined);
    prepared.letters = std::max(4.0, static_cast<double>(prepared.joined.size()));
    return prepared;
}

} // namespace ambrel::suggest
