// Taking a text apart into words.
#include "address/WrittenWords.h"

#include <algorithm>
#include <array>

#include "suggest/Letters.h"

namespace ambrel {
namespace {

using suggest::AddressRole;
using suggest::dropped;
using suggest::foldedLetter;
using suggest::WordLists;

constexpr char masculineOrdinal = '\xBA', feminineOrdinal = '\xAA', degree = '\xB0';
constexpr std::size_t mostDigits = 4; // of a house number

bool isDigit(char c) { return c >= '0' && c <= '9'; }
bool isOrdinalSign(char c) { return c == masculineOrdinal || c == feminineOrdinal || c == degree; }
bool isWordLetter(char c) { return foldedLetter(c) != 0 && foldedLetter(c) != dropped && !isDigit(c); }

std::uint8_t bit(Separator separator) { return static_cast<std::uint8_t>(separator); }

std::uint8_t separatorOf(char c) {
    switch (c) {
    case ' ':
    case '\xA0':
        return bit(Separator::Blank);
    case '-':
        return bit(Separator::Hyphen);
    case '/':
    case '\\':
        return bit(Separator::Slash);
    case '(':
    case '[':
        return bit(Separator::Open) | bit(Separator::Apart);
    case ')':
    case ']':
    case ',':
    case ';':
    case '|':
    case '\t':
    case '\n':
    case '\r':
    case '\v':
    case '\f':
    case '\x96': // dashes and a bullet
    case '\x97':
    case '\x95':
        return bit(Separator::Apart);
    case '\'':
    case '`':
    case '\xB4':
    case '\x91':
    case '\x92':
        return bit(Separator::Apostrophe);
    default:
        return 0;
    }
}

/// The ends of ordinals in letters: "1ro", "3er", "2da". Single letters ("2n", "1a") say it only in a floor.
bool endsOrdinal(std::string_view letters) {
    static constexpr std::array<std::string_view, 13> ends{"ER", "RO", "DO", "TO", "MO", "VO", "NO",
                                                           "RA", "DA", "TA", "MA", "VA", "NA"};
    return std::ranges::find(ends, letters) != ends.end();
}

} // namespace

bool WrittenWord::isHouseNumber() const {
    if (digits == 0 || digits > mostDigits || isOrdinal || isFraction) {
        return false;
    }
    if (letters().size() <= 1) {
        return true;
    }
    const suggest::WordEntry* const suffix = WordLists::builtIn().find(letters());
    return suffix != nullptr && suffix->has(AddressRole::Suffix);
}

WrittenWords::WrittenWords(std::string_view source) : source_(source) {
    words_.reserve(16); // more than most have, in one of the small blocks that memory is quick to give
    for (std::size_t at = 0;;) {
        const std::size_t gap = at;
        while (at < source_.size() && !isDigit(source_[at]) && !isWordLetter(source_[at])) {
            ++at;
        }
        if (at == source_.size()) {
            return;
        }
        separate(gap, at);
        readWord(at);
    }
}

void WrittenWords::separate(std::size_t gapBegin, std::size_t gapEnd) {
    gap_ = 0;
    for (std::size_t at = gapBegin; at < gapEnd; ++at) {
        gap_ |= separatorOf(source_[at]);
    }
    // "Getafe - Madrid", but "5 - 7".
    const bool isDash = (gap_ & bit(Separator::Hyphen)) != 0 && (gap_ & bit(Separator::Blank)) != 0;
    const bool isBetweenDigits = gapBegin > 0 && isDigit(source_[gapBegin - 1]) && isDigit(source_[gapEnd]);
    // "Mayor 5. Getafe. Madrid", but not "Gral. Primo de Rivera".
    const bool hasStop = gapEnd - gapBegin > 1 && source_[gapBegin] == '.' && !isDigit(source_[gapEnd]) &&
                         !words_.empty() && words_.back().folded.size() >= 5 &&
                         words_.back().entry == nullptr && words_.back().digits == 0;
    if (hasStop || (isDash && !isBetweenDigits)) {
        gap_ |= bit(Separator::Apart);
    }
}

void WrittenWords::readWord(std::size_t& at) {
    WrittenWord word;
    word.begin = at;
    word.before = gap_;
    if (isDigit(source_[at])) {
        readNumber(word, at);
    } else {
        readLetters(word, at);
    }
    word.end = at;
    if (word.digits == 0) {
        word.entry = WordLists::builtIn().find(word.folded);
    }
    words_.push_back(std::move(word));
}

void WrittenWords::readNumber(WrittenWord& word, std::size_t& at) const {
    const auto digitAt = [&](std::size_t index) { return index < source_.size() && isDigit(source_[index]); };
    const bool isKilometre = !words_.empty() && words_.back().is(AddressRole::Kilometre);
    while (digitAt(at)) {
        word.folded += source_[at++];
    }
    const auto continues = [&] {
        if (at >= source_.size() || !digitAt(at + 1)) {
            return false;
        }
        const char c = source_[at];
        if (isKilometre) {
            return c == ',' || c == '.' || c == '\'' || c == '+';
        }
        std::size_t end = at + 1;
        while (digitAt(end)) {
            ++end;
        }
        return c == '.' && (end == source_.size() || !isWordLetter(source_[end])); // not "5.3ºB"
    };
    while (continues()) {
        word.isFraction = true;
        ++at;
        while (digitAt(at)) {
            word.folded += source_[at++];
        }
    }
    word.digits = static_cast<std::uint8_t>(std::min<std::size_t>(word.folded.size(), 255));
    const bool hasStop = at + 1 < source_.size() && source_[at] == '.' && isOrdinalSign(source_[at + 1]);
    if (hasStop || (at < source_.size() && isOrdinalSign(source_[at]))) {
        at += hasStop ? 2 : 1;
        word.isOrdinal = true;
        return;
    }
    if (word.digits >= 5) { // "28009Madrid"
        return;
    }
    while (at < source_.size() && isWordLetter(source_[at]) && !isOrdinalSign(source_[at])) {
        word.folded += foldedLetter(source_[at++]);
    }
    word.isOrdinal = endsOrdinal(word.letters());
}

bool WrittenWords::isLetterAt(std::size_t index) const {
    return index < source_.size() && isWordLetter(source_[index]);
}

void WrittenWords::readLetters(WrittenWord& word, std::size_t& at) const {
    const auto inside = [&](std::size_t index) {
        return index + 1 < source_.size() && foldedLetter(source_[index]) == dropped && isLetterAt(index + 1);
    };
    const auto isEnye = [&](std::size_t index) { // what old conversions left of it
        return index < source_.size() && source_[index] == '\\' && word.folded.size() > 1 &&
               isLetterAt(index + 1);
    };
    do {
        std::size_t end = at;
        while (isLetterAt(end)) {
            ++end;
        }
        const std::size_t before = word.folded.size();
        word.folded.resize(before + (end - at));
        std::transform(source_.begin() + static_cast<std::ptrdiff_t>(at),
                       source_.begin() + static_cast<std::ptrdiff_t>(end),
                       word.folded.begin() + static_cast<std::ptrdiff_t>(before), foldedLetter);
        at = end;
        if (isEnye(at)) {
            word.folded += suggest::enye;
        } else if (!inside(at)) {
            break;
        }
        ++at;
    } while (true);
    readInitials(word, at);
    readNoNumber(word, at);
}

/// "P.I.", "C.P.", "n.º"
void WrittenWords::readInitials(WrittenWord& word, std::size_t& at) const {
    while (word.folded.size() < 4 && at - word.begin == 2 * word.folded.size() - 1 &&
           at + 1 < source_.size() && source_[at] == '.' && isLetterAt(at + 1) &&
           (isOrdinalSign(source_[at + 1]) ||
            (!isLetterAt(at + 2) && !(at + 2 < source_.size() && isDigit(source_[at + 2]))))) {
        word.folded += foldedLetter(source_[at + 1]);
        at += 2;
    }
}

/// "S/N", "s-n", "S/Nº"
void WrittenWords::readNoNumber(WrittenWord& word, std::size_t& at) const {
    if (word.folded != "S" || at + 1 >= source_.size() ||
        (source_[at] != '/' && source_[at] != '-' && source_[at] != '\\') ||
        foldedLetter(source_[at + 1]) != 'N') {
        return;
    }
    std::size_t end = at + 2;
    while (isLetterAt(end)) {
        ++end;
    }
    const std::string whole = "S" + suggest::foldLetters(source_.substr(at + 1, end - at - 1));
    const suggest::WordEntry* const entry = WordLists::builtIn().find(whole);
    if (entry != nullptr && entry->has(AddressRole::NoNumber)) {
        word.folded = whole;
        at = end;
    }
}

std::string_view WrittenWords::text(WordRange range) const {
    if (range.isEmpty()) {
        return {};
    }
    const std::size_t begin = words_[range.first].begin, end = words_[range.last - 1].end;
    const std::string_view text = source_.substr(begin, end - begin);
    if (text.find('(') == std::string_view::npos) {
        return text;
    }
    const bool isOpen = std::ranges::count(text, '(') > std::ranges::count(text, ')');
    const std::size_t close = isOpen ? source_.find_first_not_of(" .", end) : std::string_view::npos;
    return close != std::string_view::npos && source_[close] == ')' ? source_.substr(begin, close + 1 - begin)
                                                                    : text;
}

std::string_view WrittenWords::textWithStop(WordRange range) const {
    const std::string_view plain = text(range);
    if (plain.empty()) {
        return plain;
    }
    const auto begin = static_cast<std::size_t>(plain.data() - source_.data());
    std::size_t end = begin + plain.size();
    while (end < source_.size() && (source_[end] == '.' || source_[end] == '/')) {
        ++end;
    }
    return source_.substr(begin, end - begin);
}

bool WrittenWords::isFollowedBy(std::size_t index, char character) const {
    const std::size_t end = words_[index].end;
    return end < source_.size() && source_[end] == character;
}

} // namespace ambrel
