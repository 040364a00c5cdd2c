// Choosing among the stretches of a street.
#include "address/StreetCode.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace ambrel {
namespace {

using Stretches = std::vector<StreetStretch>;
using Certainty = StreetCode::Certainty;

template<class Condition>
Stretches those(const Stretches& stretches, Condition condition) {
    Stretches chosen;
    std::ranges::copy_if(stretches, std::back_inserter(chosen), condition);
    return chosen;
}

Stretches saidToBeOf(const Stretches& stretches, const std::string& ineCode) {
    return those(stretches, [&](const StreetStretch& one) { return one.ineCode == ineCode; });
}

/// Drops stretches marked as another municipality's, unless none is marked as this one's.
Stretches withoutForeign(const Stretches& stretches, const std::string& ineCode) {
    if (saidToBeOf(stretches, ineCode).empty()) {
        return stretches;
    }
    return those(stretches,
                 [&](const StreetStretch& one) { return one.ineCode.empty() || one.ineCode == ineCode; });
}

bool shareOneCode(const Stretches& stretches) {
    return std::ranges::all_of(
        stretches, [&](const StreetStretch& one) { return one.postalCode == stretches.front().postalCode; });
}

Certainty sureOr(Certainty otherwise, const Stretches& stretches) {
    if (!shareOneCode(stretches)) {
        return otherwise;
    }
    return stretches.front().postalCode.empty() ? Certainty::NoCode : Certainty::Sure;
}

} // namespace

Stretches stretchesOfType(Stretches stretches, const std::string& type) {
    if (type.empty()) {
        return stretches;
    }
    for (const std::string& wanted : {type, std::string()}) {
        if (auto chosen = those(stretches, [&](const StreetStretch& one) { return one.type == wanted; });
            !chosen.empty()) {
            return chosen;
        }
    }
    return stretches;
}

StreetCode streetCode(const Stretches& all, const std::string& ineCode, const HouseNumber& number) {
    const Stretches stretches = withoutForeign(all, ineCode);
    if (number.kind == HouseNumber::Kind::Unclear) {
        return {Certainty::Unclear, stretches.front()};
    }
    if (!number.isKnown()) {
        return {sureOr(Certainty::NoNumber, stretches), stretches.front()};
    }
    Stretches holders =
        those(stretches, [&](const StreetStretch& one) { return one.ranges.hold(number.value); });
    if (holders.empty()) {
        return {Certainty::NoStretch, stretches.front()};
    }
    if (!shareOneCode(holders)) {
        if (Stretches own = saidToBeOf(holders, ineCode); !own.empty()) {
            holders = std::move(own);
        }
    }
    return {sureOr(Certainty::Several, holders), holders.front()};
}

} // namespace ambrel
