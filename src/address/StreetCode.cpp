// Choosing among the stretches of a street.
#include "address/StreetCode.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace ambrel {
namespace {

using Stretches = std::vector<StreetStretch>;
using Certainty = StreetCode::Certainty;

/// Some of the stretches of a street.
using Some = std::vector<const StreetStretch*>;

template<class Condition>
Some those(const Some& stretches, Condition condition) {
    Some chosen;
    std::ranges::copy_if(stretches, std::back_inserter(chosen),
                         [&](const StreetStretch* one) { return condition(*one); });
    return chosen;
}

Some saidToBeOf(const Some& stretches, const std::string& ineCode) {
    return those(stretches, [&](const StreetStretch& one) { return one.ineCode == ineCode; });
}

/// Drops stretches marked as another municipality's, unless none is marked as this one's.
Some withoutForeign(const Stretches& all, const std::string& ineCode) {
    Some stretches;
    for (const StreetStretch& one : all) {
        stretches.push_back(&one);
    }
    if (std::ranges::find(all, ineCode, &StreetStretch::ineCode) == all.end()) {
        return stretches;
    }
    return those(stretches,
                 [&](const StreetStretch& one) { return one.ineCode.empty() || one.ineCode == ineCode; });
}

bool shareOneCode(const Some& stretches) {
    return std::ranges::all_of(stretches, [&](const StreetStretch* one) {
        return one->postalCode == stretches.front()->postalCode;
    });
}

Certainty sureOr(Certainty otherwise, const Some& stretches) {
    if (!shareOneCode(stretches)) {
        return otherwise;
    }
    return stretches.front()->postalCode.empty() ? Certainty::NoCode : Certainty::Sure;
}

} // namespace

Stretches stretchesOfType(Stretches stretches, const std::string& type) {
    if (type.empty()) {
        return stretches;
    }
    for (const std::string& wanted : {type, std::string()}) {
        Stretches chosen;
        std::ranges::copy_if(stretches, std::back_inserter(chosen),
                             [&](const StreetStretch& one) { return one.type == wanted; });
        if (!chosen.empty()) {
            return chosen;
        }
    }
    return stretches;
}

StreetCode streetCode(const Stretches& all, const std::string& ineCode, const HouseNumber& number) {
    const Some stretches = withoutForeign(all, ineCode);
    if (number.kind == HouseNumber::Kind::Unclear) {
        return {Certainty::Unclear, *stretches.front()};
    }
    if (!number.isKnown()) {
        return {sureOr(Certainty::NoNumber, stretches), *stretches.front()};
    }
    Some holders = those(stretches, [&](const StreetStretch& one) { return one.ranges.hold(number.value); });
    if (holders.empty()) {
        return {Certainty::NoStretch, *stretches.front()};
    }
    if (!shareOneCode(holders)) {
        if (Some own = saidToBeOf(holders, ineCode); !own.empty()) {
            holders = std::move(own);
        }
    }
    return {sureOr(Certainty::Several, holders), *holders.front()};
}

} // namespace ambrel
