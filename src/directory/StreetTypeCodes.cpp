// Maps abbreviations of street types.
#include "directory/StreetTypeCodes.h"

#include <algorithm>

#include "suggest/Letters.h"

namespace ambrel::directory {
namespace {

using suggest::TypeSet;
using suggest::WordLists;

/// The kinds that a name of one or two words stands for.
TypeSet typesOf(std::string_view name) {
    const WordLists& lists = WordLists::builtIn();
    if (const std::size_t blank = name.find(' '); blank != std::string_view::npos) {
        if (const TypeSet both = lists.typesOf(suggest::foldLetters(name.substr(0, blank)),
                                               suggest::foldLetters(name.substr(blank + 1)))) {
            return both;
        }
    }
    const suggest::WordEntry* const entry = lists.find(suggest::foldLetters(name));
    return entry != nullptr ? entry->types : 0;
}

} // namespace

StreetTypeCodes::StreetTypeCodes(std::vector<StreetTypeRow> rows) {
    for (const StreetTypeRow& row : rows) {
        addNames(row.name, row.code);
    }
    for (const StreetTypeRow& row : rows) {
        addNames(row.nameCat, row.code);
    }
}

void StreetTypeCodes::addNames(const std::string& names, const std::string& code) {
    std::string_view rest = names;
    while (!rest.empty()) {
        const std::size_t comma = std::min(rest.find(','), rest.size());
        std::string_view name = rest.substr(0, comma);
        name.remove_prefix(std::min(name.find_first_not_of(' '), name.size()));
        rest.remove_prefix(std::min(comma + 1, rest.size()));
        if (std::string folded = suggest::foldLetters(name); !folded.empty()) {
            names_.push_back({std::move(folded), typesOf(name), code});
        }
    }
}

std::string StreetTypeCodes::search(std::string_view abbreviation) const {
    const std::string_view known = WordLists::builtIn().officialType(abbreviation);
    const std::string_view type = known.empty() ? abbreviation : known;
    const std::string folded = suggest::foldLetters(type);
    auto found = std::ranges::find(names_, folded, &Name::folded);
    if (found == names_.end() && !known.empty()) {
        const TypeSet types = typesOf(known);
        found = std::ranges::find_if(names_, [&](const Name& name) { return (name.types & types) != 0; });
    }
    return found != names_.end() ? found->code : std::string();
}

const std::string& StreetTypeCodes::codeOf(std::string_view abbreviation) {
    static const std::string none;
    if (abbreviation.empty()) {
        return none;
    }
    auto known = codes_.find(abbreviation);
    if (known == codes_.end()) {
        known = codes_.emplace(abbreviation, search(abbreviation)).first;
    }
    if (known->second.empty()) {
        ++unknown_[std::string(abbreviation)];
    }
    return known->second;
}

} // namespace ambrel::directory
