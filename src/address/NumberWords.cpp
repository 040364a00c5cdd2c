// Reading numbers, floors and doors.
#include "address/NumberWords.h"

#include <algorithm>

#include "address/Provinces.h"

namespace ambrel {
namespace {

using suggest::AddressRole;

constexpr int widestRange = 400; // "3-5" is a range, "3-2004" a door

int valueOf(const WrittenWord& word) {
    int value = 0;
    for (std::size_t i = 0; i < word.digits && i < 6; ++i) {
        value = value * 10 + (word.folded[i] - '0');
    }
    return value;
}

/// Whether a word is joined to the one before it without a comma or bracket between them.
bool goesOn(const WrittenWords& words, std::size_t at, std::size_t last) {
    return at < last && !words[at].follows(Separator::Apart);
}

/// A word of a name: neither a number nor a letter nor a word that lists of floors have.
bool isText(const WrittenWord& word) {
    return word.digits == 0 && word.folded.size() > 1 && !word.is(AddressRole::Inside) &&
           !word.is(AddressRole::Unit) && !word.is(AddressRole::Suffix) &&
           !word.is(AddressRole::NumberMark) && (word.entry == nullptr || word.entry->number == 0);
}

/// Whether a letter is the article of the name after it: "A Coruña", "O Grove", "L'Hospitalet".
bool isArticle(const WrittenWords& words, std::size_t at, std::size_t last) {
    if (!goesOn(words, at + 1, last) || !isText(words[at + 1])) {
        return false;
    }
    const std::string& letter = words[at].folded;
    return words[at + 1].follows(Separator::Apostrophe) || letter == "O" || letter == "Y" ||
           (letter == "A" && isProvince(letter + words[at + 1].folded));
}

class NumberReading {
public:
    NumberReading(const WrittenWords& words, std::size_t at, std::size_t last)
        : words_(words), first_(at), at_(at), last_(last) {}

    WrittenNumber read() {
        while (at_ + 1 < last_ && words_[at_].is(AddressRole::NumberMark) &&
               !words_[at_ + 1].follows(Separator::Hyphen)) {
            ++at_;
        }
        if (at_ < last_ && (readNone() || readKilometre() || readDigits())) {
            number_.words = {first_, at_};
        }
        return std::move(number_);
    }

private:
    bool readNone() {
        const std::size_t end = noNumberEnd(words_, at_, last_);
        if (end == at_) {
            return false;
        }
        at_ = end;
        number_.number = "S/N";
        return true;
    }

    /// "km 12,5", "12 km"
    bool readKilometre() {
        const bool isAfter = at_ + 1 < last_ && words_[at_ + 1].is(AddressRole::Kilometre) &&
                             words_[at_].digits == words_[at_].folded.size() &&
                             !(at_ + 2 < last_ && words_[at_ + 2].digits != 0);
        if (!isAfter && !(words_[at_].is(AddressRole::Kilometre) && at_ + 1 < last_)) {
            return false;
        }
        const std::size_t figures = isAfter ? at_ : at_ + 1;
        if (words_[figures].digits == 0) {
            return false;
        }
        number_.number = "KM ";
        number_.number += words_.text({figures, figures + 1});
        at_ += 2;
        return true;
    }

    bool readDigits() {
        const WrittenWord& word = words_[at_];
        if (!word.isHouseNumber()) {
            return false;
        }
        number_.number = word.folded.substr(0, word.digits);
        number_.suffix = word.letters();
        value_ = valueOf(word);
        ++at_;
        while (readSuffix() || readEnd()) {
        }
        return true;
    }

    bool readSuffix() {
        if (at_ == last_) {
            return false;
        }
        const WrittenWord& word = words_[at_];
        const bool isWord = word.is(AddressRole::Suffix);
        const bool isLetter = number_.suffix.empty() && number_.end.empty() && word.isLetter() &&
                              goesOn(words_, at_, last_) && !isConnector(at_) &&
                              !isArticle(words_, at_, last_);
        if (!isWord && !isLetter) {
            return false;
        }
        number_.suffix += (number_.suffix.empty() ? "" : " ") + word.folded;
        ++at_;
        return true;
    }

    /// "5 y 7", "5 al 9", "5 a 9"
    bool isConnector(std::size_t at) const {
        const std::string& word = words_[at].folded;
        const bool isOne = word == "Y" || word == "AL" || word == "I" ||
                           ((word == "A" || word == "E") && words_.text({at, at + 1}) != word);
        return isOne && isEnd(at + 1);
    }

    bool isEnd(std::size_t at) const {
        return goesOn(words_, at, last_) && words_[at].isHouseNumber() && valueOf(words_[at]) > value_ &&
               valueOf(words_[at]) - value_ <= widestRange;
    }

    bool readEnd() {
        if (!number_.end.empty() || at_ == last_) {
            return false;
        }
        const bool isJoined = words_[at_].follows(Separator::Hyphen) || words_[at_].follows(Separator::Slash);
        const std::size_t end = isJoined ? at_ : isConnector(at_) ? at_ + 1 : last_;
        if (!isEnd(end)) {
            return false;
        }
        number_.end = words_[end].folded;
        at_ = end + 1;
        return true;
    }

    const WrittenWords& words_;
    std::size_t first_, at_, last_;
    int value_ = 0;
    WrittenNumber number_;
};

bool isRoman(const WrittenWord& word) {
    return word.digits == 0 && word.folded.find_first_not_of("IVX") == std::string::npos;
}

/// What a portal, a door or a block is called by: "3", "B", "II", "1º", "bajo".
bool isName(const WrittenWord& word) {
    return word.digits != 0 || word.isLetter() || isRoman(word) || word.is(AddressRole::Inside) ||
           (word.entry != nullptr && word.entry->number != 0);
}

/// One past the words of one statement of a floor or door that begins at a word; `at` if none does.
std::size_t statementEnd(const WrittenWords& words, std::size_t at, std::size_t last) {
    const WrittenWord& word = words[at];
    const bool isBeforeText = goesOn(words, at + 1, last) && isText(words[at + 1]);
    const bool isBeforeSmall = isBeforeText && words[at + 1].isSmall();
    if (word.digits != 0) {
        const bool isShort = word.digits <= (isBeforeText ? 3 : 4) && !word.isFraction;
        return isShort && !isBeforeSmall && !isDate(words, at, last) ? at + 1 : at;
    }
    if (word.is(AddressRole::Unit)) {
        std::size_t name = at + 1;
        while (name + 1 < last && words[name].is(AddressRole::NumberMark)) {
            ++name;
        }
        const bool isThere = name < last && !words[name].follows(Separator::Apart);
        if (isThere && (isName(words[name]) || words[name].is(AddressRole::NumberMark))) {
            return name + 1; // a mark alone: "local nº 28009", where the figures are the postal code
        }
        return isBeforeText ? at : at + 1;
    }
    if (word.isLetter()) {
        return isArticle(words, at, last) || (isBeforeText && word.folded == "Y") ? at : at + 1;
    }
    const bool isNumeral =
        word.entry != nullptr && word.entry->number != 0 && !isBeforeText; // not "Dos Torres"
    const bool isOne = word.is(AddressRole::Inside) || word.is(AddressRole::Suffix) || isNumeral;
    return isOne && !isBeforeSmall ? at + 1 : at;
}

} // namespace

WrittenNumber readNumber(const WrittenWords& words, std::size_t at, std::size_t last) {
    return NumberReading(words, at, last).read();
}

std::size_t noNumberEnd(const WrittenWords& words, std::size_t at, std::size_t last) {
    if (at < last && words[at].is(AddressRole::NoNumber)) {
        return at + 1;
    }
    const bool isPair =
        at + 1 < last && words[at + 1].is(AddressRole::NumberMark) &&
        (words[at].folded == "SIN" || (words[at].folded == "S" && words[at + 1].follows(Separator::Slash)));
    return isPair ? at + 2 : at;
}

std::size_t floorEnd(const WrittenWords& words, std::size_t at, std::size_t last) {
    while (at < last) {
        const std::size_t end = statementEnd(words, at, last);
        if (end == at) {
            break;
        }
        at = end;
    }
    return at;
}

bool isDate(const WrittenWords& words, std::size_t at, std::size_t last) {
    std::size_t month = at + 1;
    while (month < last && words[month].isSmall()) {
        ++month;
    }
    return goesOn(words, at + 1, last) && month < last && words[month].is(AddressRole::Month);
}

} // namespace ambrel
