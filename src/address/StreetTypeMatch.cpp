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

bool StreetTypeMatch::fits(std::string_view code, std::string_view written) {
    return code == written || (ofText(code) & ofText(written)) != 0 || code == tidied(written);
}

} // namespace ambrel
