// Taking names apart.
#include "suggest/Folding.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "suggest/Letters.h"

namespace ambrel::suggest {
namespace {

/// The letters from a position on; moves the position to the first byte after them.
NameWord readWord(std::string_view name, std::size_t& at) {
    const auto isOrdinal = [&](std::size_t place) {
        return place < name.size() && (static_cast<unsigned char>(name[place]) == 0xBA ||
                                       static_cast<unsigned char>(name[place]) == 0xAA);
    };
    NameWord word;
    word.begin = at;
    for (; at < name.size(); ++at) {
        char letter = foldedLetter(name[at]);
        if (name[at] == '\\') {
            letter = enye; // what old conversions left of it
        }
        const bool isAfterDigit = !word.literal.empty() && isDigit(word.literal.back());
        if (name[at] == '.' && !isAfterDigit && isOrdinal(at + 1)) {
            continue; // "M.ª" is one word
        }
        if (letter == 0 || (isOrdinal(at) && isAfterDigit)) {
            break;
        }
        if (letter != dropped) {
            word.literal += letter;
        }
    }
    word.length = at - word.begin;
    return word;
}

bool isApostrophe(std::string_view name, std::size_t at) {
    if (at >= name.size()) {
        return false;
    }
    const auto byte = static_cast<unsigned char>(name[at]);
    return byte == '\'' || byte == 0x92 || byte == 0xB4 || byte == 0x91 || byte == '`';
}

std::uint16_t digitsOf(std::string_view text) {
    std::uint16_t value = 0;
    const auto [end, problem] = std::from_chars(text.data(), text.data() + text.size(), value);
    return problem == std::errc() && end == text.data() + text.size() ? value : 0;
}

void classify(NameWord& word, bool isElided, bool isFirst) {
    word.text = word.literal;
    word.number = digitsOf(word.literal);
    const WordEntry* entry = WordLists::builtIn().find(word.literal);
    if (entry == nullptr) {
        return;
    }
    if (entry->isSmall && (entry->full.empty() || isElided)) {
        word.role = WordRole::Small;
    }
    if (entry->number != 0 && (word.literal.size() > 1 || !isFirst)) {
        word.number = entry->number;
    }
    if (!entry->full.empty() && !isElided) {
        word.text = entry->full;
        entry = WordLists::builtIn().find(word.text);
    }
    if (entry != nullptr && entry->isTitle) {
        word.role = WordRole::Title;
    }
}

TypeSet typesOf(const NameWord& word) {
    const WordEntry* entry = WordLists::builtIn().find(word.literal);
    return entry == nullptr ? 0 : entry->types;
}

/// The number of words from `first` on that name a street type, and the type.
std::pair<std::size_t, TypeSet> typeAt(const std::vector<NameWord>& words, std::size_t first) {
    if (first + 1 < words.size()) {
        if (const TypeSet types =
                WordLists::builtIn().typesOf(words[first].literal, words[first + 1].literal)) {
            return {2, types};
        }
    }
    if (first < words.size()) {
        if (const TypeSet types = typesOf(words[first])) {
            return {1, types};
        }
    }
    return {0, 0};
}

bool isNumberWord(std::string_view literal) {
    return literal == "N" || literal == "NO" || literal == "NUM" || literal == "NUMERO" || literal == "NRO";
}

/// Whether a word says that the number after it is not that of the house: the two stay together, and no
/// look-up takes the number for one.
bool numbersSomethingElse(std::string_view literal) {
    static constexpr std::array<std::string_view, 22> words{
        "APARTAMENTO", "APTO",  "BAJO",   "BLOQUE", "BLQ",  "ESC",       "ESCALERA", "KILOMETRO",
        "KM",          "LOCAL", "LOTE",   "MODULO", "NAVE", "PARCELA",   "PISO",     "PLANTA",
        "PORTAL",      "PTA",   "PUERTA", "PTAL",   "QM",   "QUILOMETRE"};
    return std::ranges::find(words, literal) != words.end();
}

/// Whether a word can be a house number: digits, perhaps with a letter. One too long for that is a number
/// after the street as well, and must not be lost with the words that no name has.
bool isHouseNumber(const std::string& literal) {
    const std::size_t digits = std::min(literal.find_first_not_of("0123456789"), literal.size());
    return digits >= 1 && literal.size() - digits <= 1;
}

bool isCounted(const NameWord& word) { return counts(word.role); }

/// The words as they stand, each with what it is by itself.
std::vector<NameWord> readWords(std::string_view name) {
    std::vector<NameWord> words;
    bool isInBrackets = false;
    for (std::size_t at = 0; at < name.size();) {
        if (name[at] == '(' || name[at] == ')') {
            isInBrackets = name[at] == '(' && !words.empty();
        }
        const char letter = foldedLetter(name[at]);
        if (letter == 0 || letter == dropped) {
            ++at;
            continue;
        }
        NameWord word = readWord(name, at);
        const bool isFirst = std::ranges::none_of(words, isCounted);
        classify(word, word.literal.size() <= 2 && isApostrophe(name, at), isFirst);
        if (isInBrackets && word.role != WordRole::Small) {
            word.role = WordRole::Appended;
        }
        words.push_back(std::move(word));
    }
    return words;
}

/// "2 de Mayo" and "Dos de Mayo", but "Rúa dos Olmos".
void settleDos(std::vector<NameWord>& words) {
    for (std::size_t i = 0; i < words.size(); ++i) {
        if (words[i].literal == "DOS") {
            const bool isNumeral = i + 1 == words.size() || words[i + 1].literal == "DE" ||
                                   words[i + 1].role == WordRole::Appended;
            words[i].role = isNumeral ? WordRole::Plain : WordRole::Small;
            words[i].number = isNumeral ? 2 : 0;
        }
    }
}

/// "Calle S" of an estate is not a saint.
void settleOnlyLetter(std::vector<NameWord>& words) {
    if (std::ranges::count_if(words, isCounted) == 1) {
        if (NameWord& only = *std::ranges::find_if(words, isCounted); only.literal.size() == 1) {
            only.text = only.literal;
            only.role = WordRole::Plain;
        }
    }
}

/// "Coruña, A" and "BREÑA (LA)" as they are spoken.
void bringArticleForward(std::string_view name, std::vector<NameWord>& words) {
    std::size_t first = words.size();
    while (first > 0 && words[first - 1].role == WordRole::Small) {
        --first;
    }
    if (first == 0 || first == words.size()) {
        return;
    }
    const std::size_t gap = words[first - 1].begin + words[first - 1].length;
    if (name.substr(gap, words[first].begin - gap).find_first_of(",(") != std::string_view::npos) {
        std::rotate(words.begin(), words.begin() + static_cast<std::ptrdiff_t>(first), words.end());
    }
}

/// The type after a comma at the end, as in "Mayor, calle"; none if there is none.
TypeSet typeAfterComma(std::string_view typed, const std::vector<NameWord>& words) {
    if (words.size() < 2) {
        return 0;
    }
    const NameWord& before = words[words.size() - 2];
    const std::size_t gap = before.begin + before.length;
    const std::string_view between = typed.substr(gap, words.back().begin - gap);
    const bool isAfterComma = between.find(',') != std::string_view::npos;
    return isAfterComma && !isHouseNumber(words.back().literal) ? typesOf(words.back()) : 0;
}

/// A word at which the name may begin, and the type that those before it name.
struct NameBegin {
    std::size_t first = 0;
    TypeSet types = 0;
};

/// The first word, and those after one and after two types.
std::vector<NameBegin> nameBegins(const std::vector<NameWord>& words) {
    constexpr std::size_t mostTypes = 2;
    std::vector<NameBegin> begins(1); // the first word
    while (begins.size() <= mostTypes) {
        const auto [length, types] = typeAt(words, begins.back().first);
        if (length == 0 || begins.back().first + length >= words.size()) {
            break;
        }
        begins.push_back({begins.back().first + length, types});
    }
    return begins;
}

} // namespace

std::vector<NameWord> foldName(std::string_view name) {
    std::vector<NameWord> words = readWords(name);
    settleDos(words);
    settleOnlyLetter(words);
    bringArticleForward(name, words);
    if (std::ranges::none_of(words, isCounted)) {
        for (NameWord& word : words) {
            word.role = WordRole::Plain; // nothing else to go by
        }
    }
    return words;
}

std::string joined(const std::vector<NameWord>& words, std::size_t first, std::size_t last) {
    std::string letters;
    for (std::size_t i = first; i < last; ++i) {
        if (words[i].role != WordRole::Appended) {
            letters += words[i].literal;
        }
    }
    return letters;
}

TypedStreet readStreet(std::string_view typed) {
    TypedStreet street{foldName(typed), 0, {}};
    const std::vector<NameWord>& words = street.words;
    const std::size_t last = words.size();
    const std::vector<NameBegin> begins = nameBegins(words);
    const auto add = [&](std::size_t end, TypeSet after, const std::string& number) {
        for (const NameBegin& begin : begins) {
            if (begin.first < end) {
                street.readings.push_back({begin.first, end, begin.types | after, number});
            }
        }
    };
    add(last, 0, {});
    if (const TypeSet after = typeAfterComma(typed, words); after != 0) {
        add(last - 1, after, {});
    }
    for (std::size_t i = 1; i < last; ++i) {
        const bool isWithout = words[i].literal == "S" && i + 1 < last && words[i + 1].literal == "N";
        if (isHouseNumber(words[i].literal) || words[i].literal == "SN" || isWithout) {
            const std::string& before = words[i - 1].literal;
            const bool isOthers = i >= 2 && numbersSomethingElse(before);
            const std::size_t end = isOthers || (i >= 2 && isNumberWord(before)) ? i - 1 : i;
            std::string rest(typed.substr(words[isOthers ? i - 1 : i].begin));
            rest.erase(rest.find_last_not_of(" \t") + 1);
            add(end, 0, rest);
        }
    }
    for (const TypedStreet::Reading& reading : street.readings) {
        street.types |= reading.types;
    }
    return street;
}

} // namespace ambrel::suggest
