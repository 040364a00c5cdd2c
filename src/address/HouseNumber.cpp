// Reading house numbers.
#include "address/HouseNumber.h"

#include <algorithm>
#include <array>
#include <string>

#include "services/Rnumcad.h"

namespace ambrel {
namespace {

constexpr std::size_t mostDigits = 4;
constexpr char masculineOrdinal = '\xBA', feminineOrdinal = '\xAA', degree = '\xB0';

bool isDigit(char c) { return c >= '0' && c <= '9'; }
bool isOrdinal(char c) { return c == masculineOrdinal || c == feminineOrdinal || c == degree; }
bool isLetter(char c) {
    return !isDigit(c) && !isOrdinal(c) && isAlphanumeric(static_cast<unsigned char>(c));
}

/// Drops blanks, full stops, slashes, hyphens and ordinals from capitals: "S/Nº" becomes "SN".
std::string lettersOf(std::string_view text) {
    std::string letters;
    std::ranges::copy_if(text, std::back_inserter(letters), [](char c) { return isLetter(c) || isDigit(c); });
    return letters;
}

/// Whether a character other than letters and digits says nothing, alone or between the letters of "S/N".
bool saysNothing(char c) {
    return isOrdinal(c) || std::string_view(" .,;:-/\\()").find(c) != std::string_view::npos;
}

bool saysThatThereIsNone(std::string_view text) {
    static constexpr std::array<std::string_view, 6> words{"",        "SN",        "SNUM",
                                                           "SN\xDAM", "SINNUMERO", "SINN\xDAMERO"};
    const std::string letters = lettersOf(text);
    return std::ranges::find(words, letters) != words.end() &&
           std::ranges::all_of(text, [](char c) { return isLetter(c) || saysNothing(c); });
}

/// Removes "N", "Nº", "NUM.", "NÚMERO" and the like from the front.
std::string_view withoutAbbreviation(std::string_view text) {
    for (const std::string_view word : {"N\xDAMERO", "NUMERO", "N\xDAM", "NUM", "NRO", "NO", "N", "#"}) {
        if (!text.starts_with(word)) {
            continue;
        }
        std::string_view rest = text.substr(word.size());
        while (!rest.empty() && (rest.front() == '.' || rest.front() == ':' || rest.front() == ' ' ||
                                 isOrdinal(rest.front()))) {
            rest.remove_prefix(1);
        }
        return !rest.empty() && isDigit(rest.front()) ? rest : text;
    }
    return text;
}

/// "1O", "1O5": nobody knows whether a letter O that goes on with the digits is a nought.
bool goesOnLikeANought(std::string_view rest) {
    const std::size_t end = rest.find_first_not_of('O');
    return rest.starts_with('O') && (end == std::string_view::npos || !isLetter(rest[end]));
}

/// Whether the digits are still a house number with this text after them.
bool mayFollow(std::string_view rest) {
    if (rest.empty()) {
        return true;
    }
    if (rest.front() == '.' && rest.size() > 1 && isDigit(rest[1])) {
        return false; // a fraction, or thousands
    }
    static constexpr std::string_view separators = " ,;.-/()";
    if (goesOnLikeANought(rest)) {
        return false;
    }
    if (separators.find(rest.front()) == std::string_view::npos && !isLetter(rest.front())) {
        return false;
    }
    return !lettersOf(rest).starts_with("KM");
}

/// `digits`: how many the text begins with.
HouseNumber numberOf(std::string_view text, std::size_t digits) {
    if (digits == 0 || digits > mostDigits || !mayFollow(text.substr(digits))) {
        return {.kind = HouseNumber::Kind::Unclear};
    }
    const int value = Cad_Int(text.substr(0, digits));
    if (value == 0) {
        return {.kind = HouseNumber::Kind::Unclear};
    }
    return {.kind = HouseNumber::Kind::Known, .value = value};
}

std::size_t digitsAtStart(std::string_view text) {
    return static_cast<std::size_t>(std::ranges::find_if_not(text, isDigit) - text.begin());
}

} // namespace

HouseNumber readHouseNumber(std::string_view written) {
    const std::string_view trimmed = withoutBlanks(written);
    if (const std::size_t digits = digitsAtStart(trimmed); digits > 0 && digits == trimmed.size()) {
        return numberOf(trimmed, digits); // most of them
    }
    const std::string capitals = UpperCase(trimmed);
    const std::string_view text = capitals;
    if (text.empty() || saysThatThereIsNone(text)) {
        return {};
    }
    const std::string_view number = withoutAbbreviation(text);
    return numberOf(number, digitsAtStart(number));
}

} // namespace ambrel
