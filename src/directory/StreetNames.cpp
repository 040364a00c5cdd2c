// Shortens names so that different ones stay different.
#include "directory/StreetNames.h"

#include <array>
#include <set>
#include <unordered_map>
#include <utility>

#include "dbase/dbf/codepage.h"
#include "suggest/Abbreviation.h"

namespace ambrel::directory {
namespace {

constexpr char noBreakSpace = '\xA0';

char withoutAccent(char letter) {
    // In the order of Windows-1252, from À to Ý. Ñ, Ç and Ü are letters of their own, not accents.
    constexpr std::string_view plain = "AAAAAA\xC6\xC7"
                                       "EEEEIIII\xD0\xD1OOOOO\xD7\xD8UUU\xDCY";
    const auto byte = static_cast<unsigned char>(letter);
    return byte >= 0xC0 && byte <= 0xDD ? plain[byte - 0xC0U] : letter;
}

/// What look-ups write for each letter.
std::array<char, 256> capitals() {
    std::array<char, 256> result{};
    for (std::size_t letter = 0; letter < result.size(); ++letter) {
        const auto upper = dbase::CodePage::windows1252().upper(static_cast<unsigned char>(letter));
        result[letter] = withoutAccent(static_cast<char>(upper));
    }
    result[static_cast<unsigned char>(noBreakSpace)] = ' ';
    return result;
}

std::string withoutEndBlanks(std::string_view text) {
    return std::string(text.substr(0, text.find_last_not_of(' ') + 1));
}

/// A bracket that the cut leaves open is closed again, or goes if little is left in it.
std::string cut(std::string_view text, std::size_t width) {
    constexpr std::size_t leastInBrackets = 3;
    std::string result = withoutEndBlanks(text.substr(0, width));
    const std::size_t bracket = result.rfind('(');
    if (result.size() == text.size() || bracket == std::string::npos ||
        result.find(')', bracket) != std::string::npos) {
        return result;
    }
    if (width - 1 - bracket <= leastInBrackets) {
        return withoutEndBlanks(std::string_view(result).substr(0, bracket));
    }
    return withoutEndBlanks(std::string_view(result).substr(0, width - 1)) + ')';
}

} // namespace

std::string plainCapitals(std::string_view name) {
    static const std::array<char, 256> capital = capitals();
    std::string text(name.size(), ' ');
    std::size_t size = 0;
    for (const char letter : name) { // look-ups write one blank between two words
        const char sign = capital[static_cast<unsigned char>(letter)];
        if (sign != ' ' || (size > 0 && text[size - 1] != ' ')) {
            text[size++] = sign;
        }
    }
    text.resize(size > 0 && text[size - 1] == ' ' ? size - 1 : size);
    return text;
}

void NamesInWidth::clear() {
    names_.clear();
    shortened_.clear();
}

void NamesInWidth::add(std::uint32_t key, std::string_view name) {
    if (name.size() > width_) {
        shortened_.push_back({names_.size(), key, name, cut(suggest::abbreviated(name, width_), width_)});
    }
    names_.push_back(name);
}

std::span<const std::string_view> NamesInWidth::settle() {
    if (!shortened_.empty()) {
        keepApart();
    }
    for (const Shortened& one : shortened_) {
        names_[one.place] = one.name;
    }
    return names_;
}

/// Gives those their keys that have the same outcome as another name.
void NamesInWidth::keepApart() {
    std::unordered_map<std::string_view, std::set<std::string_view>> wholeNames; // of each outcome
    for (const Shortened& one : shortened_) {
        wholeNames[one.name].insert(one.whole);
    }
    for (const std::string_view name : names_) {
        if (const auto found = wholeNames.find(name); found != wholeNames.end()) {
            found->second.insert(name);
        }
    }
    std::vector<Shortened*> ambiguous;
    for (Shortened& one : shortened_) {
        if (wholeNames.at(one.name).size() > 1) {
            ambiguous.push_back(&one);
        }
    }
    for (Shortened* const one : ambiguous) {
        const std::string end = " (" + std::to_string(one->key) + ')';
        one->name = cut(one->name, width_ - end.size()) + end;
    }
}

} // namespace ambrel::directory
