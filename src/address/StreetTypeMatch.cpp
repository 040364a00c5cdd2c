// Comparing street types.
#include "address/StreetTypeMatch.h"

#include "address/TidyText.h"

namespace ambrel {
namespace {

/// More writings than there are of types; a file of nonsense has more.
constexpr std::size_t mostKept = 1000;

} // namespace

suggest::TypeSet StreetTypeMatch::ofText(std::string_view written) {
    if (const auto known = byText_.find(written); known != byText_.end()) {
        return known->second;
    }
    if (byText_.size() >= mostKept) {
        byText_.clear();
    }
    types_.prepare();
    return byText_.emplace(written, types_.ofText(written)).first->second;
}

unsigned StreetTypeMatch::fit(std::string_view code, std::string_view written) {
    if (code == written || code == tidied(written)) {
        return 3;
    }
    const suggest::TypeSet meant = ofText(written);
    if (code.empty() || meant == 0) {
        return 0;
    }
    if ((suggest::WordLists::builtIn().typesOfCode(code) & meant) != 0) {
        return 2;
    }
    const suggest::TypeSet ofCode = types_.ofCode(code); // which is no abbreviation
    return ((ofCode != 0 ? ofCode : ofText(code)) & meant) != 0 ? 1 : 0;
}

bool StreetTypeMatch::contradict(std::string_view one, std::string_view other) {
    const suggest::TypeSet a = ofText(one), b = ofText(other);
    return a != 0 && b != 0 && (a & b) == 0;
}

bool StreetTypeMatch::isCode(std::string_view word) {
    types_.prepare();
    return types_.ofCode(word) != 0;
}

} // namespace ambrel
