// Recognising provinces.
#include "address/Provinces.h"

#include <algorithm>
#include <string>
#include <unordered_set>

#include "suggest/Letters.h"

namespace ambrel {
namespace {

constexpr std::size_t mostWords = 6; // "Santa Cruz de Tenerife" and a margin
constexpr std::size_t mostLetters = 40;

using Names = std::unordered_set<std::string, suggest::TextHash, std::equal_to<>>;

const Names& names() {
    static const Names known = [] {
        Names letters;
        for (const auto& [name, digits] : suggest::WordLists::builtIn().provinces()) {
            letters.insert(suggest::foldLetters(name));
        }
        return letters;
    }();
    return known;
}

std::string lettersOf(const WrittenWords& words, WordRange range) {
    std::string letters;
    for (std::size_t i = range.first; i < range.last && letters.size() < mostLetters; ++i) {
        letters += words[i].folded;
    }
    return letters;
}

} // namespace

bool isProvince(std::string_view letters) { return names().contains(letters); }

bool isProvince(const WrittenWords& words, WordRange range) {
    if (range.isEmpty() || range.size() > mostWords) {
        return false;
    }
    if (isProvince(lettersOf(words, range))) {
        return true;
    }
    // Two languages: "Valencia/València".
    for (std::size_t i = range.first + 1; i < range.last; ++i) {
        if (words[i].follows(Separator::Slash)) {
            return isProvince(words, {range.first, i}) && isProvince(words, {i, range.last});
        }
    }
    // The article after the name.
    std::size_t article = range.last;
    while (article > range.first && words[article - 1].isSmall()) {
        --article;
    }
    return article > range.first && article < range.last &&
           isProvince(lettersOf(words, {article, range.last}) + lettersOf(words, {range.first, article}));
}

std::size_t provinceAtEnd(const WrittenWords& words, WordRange range) {
    const std::size_t most = std::min(range.size(), mostWords);
    for (std::size_t count = most; count > 0; --count) {
        if (isProvince(words, {range.last - count, range.last})) {
            return range.last - count;
        }
    }
    return range.last;
}

} // namespace ambrel
