// Choosing among the stretches of a street.
#include "address/StreetCode.h"

#include <algorithm>
#include <iterator>

namespace ambrel {
namespace {

using Stretches = std::vector<StreetStretch>;
using Certainty = StreetCode::Certainty;

/// Some of the stretches of a street.
struct Some {
    const StreetStretch* first = nullptr; // null if there are none
    bool shareOneCode = true;
};

template<class Condition>
Some those(const Stretches& stretches, Condition condition) {
    Some some;
    for (const StreetStretch& one : stretches) {
        if (!condition(one)) {
            continue;
        }
        if (some.first == nullptr) {
            some.first = &one;
        }
        some.shareOneCode = some.shareOneCode && one.postalCode == some.first->postalCode;
    }
    return some;
}

Certainty sureOr(Certainty otherwise, const Some& stretches) {
    if (!stretches.shareOneCode) {
        return otherwise;
    }
    return stretches.first->postalCode.empty() ? Certainty::NoCode : Certainty::Sure;
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
    const auto isOwn = [&](const StreetStretch& one) { return one.ineCode == ineCode; };
    const Some stretches = those(all, [](const StreetStretch&) { return true; });
    if (number.kind == HouseNumber::Kind::Unclear) {
        return {Certainty::Unclear, *stretches.first};
    }
    if (!number.isKnown()) {
        return {sureOr(Certainty::NoNumber, stretches), *stretches.first};
    }
    const auto holds = [&](const StreetStretch& one) { return one.ranges.hold(number.value); };
    Some holders = those(all, holds);
    if (holders.first == nullptr) {
        return {Certainty::NoStretch, *stretches.first};
    }
    if (!holders.shareOneCode) {
        const Some own = those(all, [&](const StreetStretch& one) { return isOwn(one) && holds(one); });
        if (own.first != nullptr) {
            holders = own;
        }
    }
    return {sureOr(Certainty::Several, holders), *holders.first};
}

} // namespace ambrel
