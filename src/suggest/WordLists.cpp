// Reading the word lists.
#include "suggest/WordLists.h"

#include <algorithm>
#include <charconv>
#include <stdexcept>

#include "dbase/dbf/codepage.h"
#include "suggest/Letters.h"

namespace ambrel::suggest {
namespace {

std::string ansi(std::string_view utf8) {
    const auto bytes = dbase::CodePage::windows1252().fromUtf8(utf8);
    if (!bytes) {
        throw std::invalid_argument("a letter that Windows-1252 lacks");
    }
    return *bytes;
}

std::string folded(std::string_view utf8) { return foldLetters(ansi(utf8)); }

/// An entry with the blanks that "_" stands for.
std::string spaced(std::string_view utf8) {
    std::string text = ansi(utf8);
    std::ranges::replace(text, '_', ' ');
    return text;
}

/// Calls a function with each piece between separators, empty ones left out.
template<class Use>
void forEachPiece(std::string_view text, char separator, Use use) {
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(separator), text.size());
        if (end != 0) {
            use(text.substr(0, end));
        }
        text.remove_prefix(std::min(end + 1, text.size()));
    }
}

std::uint16_t addressRole(std::string_view key) {
    static constexpr std::pair<std::string_view, AddressRole> roles[] = {
        {"NUMBER", AddressRole::NumberMark},   {"NONE", AddressRole::NoNumber},
        {"KILOMETRE", AddressRole::Kilometre}, {"SUFFIX", AddressRole::Suffix},
        {"UNIT", AddressRole::Unit},           {"INSIDE", AddressRole::Inside},
        {"BUILDING", AddressRole::Building},   {"BOX", AddressRole::Box},
        {"CODE", AddressRole::CodeMark},       {"COUNTRY", AddressRole::Country},
        {"MONTH", AddressRole::Month},         {"NOTE", AddressRole::Note}};
    for (const auto& [name, role] : roles) {
        if (name == key) {
            return static_cast<std::uint16_t>(role);
        }
    }
    throw std::invalid_argument("not a part of an address");
}

/// A number below 40 in Roman figures.
std::string romanFigures(std::uint16_t value) {
    constexpr const char* units[] = {"", "I", "II", "III", "IV", "V", "VI", "VII", "VIII", "IX"};
    return std::string(value / 10, 'X') + units[value % 10];
}

/// A number for length and first letters; other words may have the same.
std::size_t beginningOf(std::string_view word) {
    std::size_t number = word.size();
    for (const char c : word.substr(0, 3)) {
        number = number * 37 + static_cast<unsigned char>(c);
    }
    return number % 4096;
}

} // namespace

WordLists::WordLists(std::string_view text) {
    for (std::uint16_t value = 2; value < 40; ++value) { // a lone I is a word of Catalan, too
        words_[romanFigures(value)].number = value;
    }
    std::string_view section;
    std::size_t number = 0;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        const std::string_view line = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
        ++number;
        if (line.empty() || line.front() == '#') {
            continue;
        }
        if (line.front() == '[') {
            section = line;
            continue;
        }
        try {
            take(section, line);
        } catch (const std::invalid_argument& error) {
            throw std::invalid_argument("line " + std::to_string(number) + ": " + error.what());
        }
    }
    for (const auto& [word, entry] : words_) {
        beginnings_.set(beginningOf(word));
    }
}

const WordLists& WordLists::builtIn() {
    static const WordLists lists(builtInWordLists());
    return lists;
}

void WordLists::take(std::string_view section, std::string_view line) {
    const std::size_t colon = line.find(':');
    if (colon == std::string_view::npos) {
        throw std::invalid_argument("no colon");
    }
    const std::string_view key = line.substr(0, colon), rest = line.substr(colon + 1);
    if (section == "[types]") {
        takeType(rest);
        return;
    }
    forEachPiece(rest, ' ', [&](std::string_view word) {
        if (section == "[provinces]") {
            provinces_.emplace_back(spaced(word), key);
            return;
        }
        if (section == "[official]") {
            officialTypes_[ansi(word)] = spaced(key);
            return;
        }
        const std::string text = folded(word);
        if (section == "[small]") {
            words_[text].isSmall = true;
        } else if (section == "[titles]") {
            words_[text].isTitle = true;
        } else if (section == "[short]") {
            words_[text].full = folded(key);
            shortForms_.try_emplace(folded(key), ansi(word)); // the first one is the usual one
        } else if (section == "[address]") {
            words_[text].roles |= addressRole(key);
        } else if (section == "[numbers]") {
            std::uint16_t& value = words_[text].number;
            if (std::from_chars(key.data(), key.data() + key.size(), value).ec != std::errc()) {
                throw std::invalid_argument("not a number");
            }
        } else {
            throw std::invalid_argument("no section of this name");
        }
    });
}

void WordLists::takeType(std::string_view rest) {
    const std::size_t bar = rest.find('|');
    if (bar == std::string_view::npos || typeCount_ == 64) {
        throw std::invalid_argument("no codes, or too many types");
    }
    const TypeSet type = TypeSet{1} << typeCount_++;
    forEachPiece(rest.substr(0, bar), ' ', [&](std::string_view code) { codes_[std::string(code)] |= type; });
    forEachPiece(rest.substr(bar + 1), ' ', [&](std::string_view word) {
        if (const std::size_t blank = word.find('_'); blank != std::string_view::npos) {
            const std::string first = folded(word.substr(0, blank));
            words_[first].beginsPair = true;
            pairs_[first + ' ' + folded(word.substr(blank + 1))] |= type;
        } else {
            words_[folded(word)].types |= type;
        }
    });
}

const WordEntry* WordLists::find(std::string_view folded) const {
    if (!beginnings_[beginningOf(folded)]) {
        return nullptr;
    }
    const auto entry = words_.find(folded);
    return entry == words_.end() ? nullptr : &entry->second;
}

TypeSet WordLists::typesOf(std::string_view first, std::string_view second) const {
    const auto entry = pairs_.find(std::string(first) + ' ' + std::string(second));
    return entry == pairs_.end() ? 0 : entry->second;
}

std::string_view WordLists::shortFormOf(std::string_view word) const {
    const auto entry = shortForms_.find(foldLetters(word));
    return entry == shortForms_.end() ? std::string_view() : entry->second;
}

std::string_view WordLists::officialType(std::string_view abbreviation) const {
    const auto entry = officialTypes_.find(abbreviation);
    return entry == officialTypes_.end() ? std::string_view() : entry->second;
}

TypeSet WordLists::typesOfCode(std::string_view code) const {
    const auto entry = codes_.find(code);
    return entry == codes_.end() ? 0 : entry->second;
}

} // namespace ambrel::suggest
