// Judging what was found for one reading of an address.
#include "address/FindingVerdict.h"

#include <algorithm>
#include <functional>
#include <optional>
#include <utility>

#include "address/OptionVerdict.h"
#include "address/OptionWeight.h"

namespace ambrel {
namespace {

/// From here on a street is near enough to be shown as doubtful.
constexpr double leastNear = 0.6;

bool isSameStreet(const AddressOption& a, const AddressOption& b) {
    return a.street == b.street && a.place.municipality->ineCode == b.place.municipality->ineCode;
}

bool hasSameCode(const AddressOption& a, const AddressOption& b) {
    return a.code->isSure() && b.code->isSure() && a.code->stretch.postalCode == b.code->stretch.postalCode;
}

/// What others that are as likely make of the first option; nothing if there are none.
std::optional<Verdict> rivalry(std::vector<AddressOption>& options, double lead) {
    AddressOption& best = options.front();
    bool hasOtherCode = false, hasOther = false, isTypeOpen = false;
    for (auto other = options.begin() + 1; other != options.end(); ++other) {
        // Whether the other one may be missing from the tables says nothing about its likeness.
        if (best.confidence - other->confidence - other->otherDoubt >= lead ||
            (best.isCertain() && !other->isCertain())) {
            continue;
        }
        if (isSameStreet(best, *other) && hasSameCode(best, *other) && best.typeDoubt == 0) {
            // Where none was written, it does not matter which one is meant.
            isTypeOpen = isTypeOpen || other->typeDoubt == 0;
        } else {
            const bool isElsewhere = best.place.municipality != other->place.municipality;
            hasOther = true;
            hasOtherCode = hasOtherCode || isElsewhere || !hasSameCode(best, *other);
        }
    }
    if (isTypeOpen && !hasOther) {
        // Without a type, the look-ups see all of them.
        const bool isOneCode = std::ranges::all_of(options, [&](const AddressOption& one) {
            return !isSameStreet(best, one) || hasSameCode(best, one);
        });
        if (!isOneCode) {
            return Verdict::Ambiguous;
        }
        best.type.clear();
    }
    if (!hasOther) {
        return std::nullopt;
    }
    return hasOtherCode || best.isCertain() ? Verdict::Ambiguous : Verdict::Doubtful;
}

JudgedAddress judgedByPlaces(const AddressFinding& finding, double threshold) {
    const std::vector<PlaceOption>& places = finding.places;
    const bool isKnown = places.size() == 1 && 1 - places.front().doubt >= threshold;
    Verdict verdict = Verdict::UnknownStreet;
    if (!isKnown) {
        const bool areNamesakes = places.size() > 1 && places.front().source == PlaceSource::Name &&
                                  places.front().doubt == places[1].doubt;
        verdict = areNamesakes ? Verdict::Ambiguous : Verdict::UnknownMunicipality;
    }
    JudgedAddress judged =
        judgedWithoutStreet(isKnown ? &places.front() : nullptr, verdict, finding.question);
    for (const PlaceOption& place : places) {
        if (!isKnown && judged.alternatives.size() < mostAlternatives) {
            judged.alternatives.push_back(alternativeOf(place));
        }
    }
    return judged;
}

/// On the first option, in the light of the others.
Verdict verdictOnBest(AddressFinding& finding, const ValidationOptions& limits) {
    const std::optional<Verdict> rivals = rivalry(finding.options, limits.lead);
    const Verdict verdict = verdictOn(finding.options.front(), finding.question, limits);
    return rivals && verdict != Verdict::Doubtful ? *rivals : verdict;
}

/// Something is near, and cannot be taken.
JudgedAddress judgedAsOpen(const AddressFinding& finding, Verdict verdict, double threshold) {
    const AddressOption& first = finding.options.front();
    const bool isOnePlace = std::ranges::all_of(finding.options, [&](const AddressOption& one) {
        return one.place.municipality == first.place.municipality;
    });
    const bool isPlaceKnown = isOnePlace && 1 - first.place.doubt >= threshold;
    JudgedAddress judged =
        judgedWithoutStreet(isPlaceKnown ? &first.place : nullptr, verdict, finding.question);
    judged.confidence = first.confidence;
    return judged;
}

} // namespace

JudgedAddress judgedFrom(AddressFinding& finding, const ValidationOptions& limits) {
    std::vector<AddressOption>& options = finding.options;
    for (AddressOption& option : options) {
        weigh(option, finding.question);
    }
    // What is as written comes first, whatever the postal code says.
    if (options.size() > 1) {
        std::ranges::stable_sort(options, std::greater<>(), [](const AddressOption& option) {
            return std::pair(option.isCertain(), option.confidence);
        });
    }
    const bool isNear = !options.empty() && options.front().points >= leastNear;
    const Verdict verdict = isNear ? verdictOnBest(finding, limits) : Verdict::UnknownStreet;
    const bool isTaken = isNear && verdict != Verdict::Doubtful && verdict != Verdict::Ambiguous;
    JudgedAddress judged = isTaken  ? judgedAs(options.front(), verdict, finding.question)
                           : isNear ? judgedAsOpen(finding, verdict, limits.threshold)
                                    : judgedByPlaces(finding, limits.threshold);
    if (!isSettled(judged.verdict)) {
        for (std::size_t shown = isTaken ? 1 : 0;
             shown < options.size() && judged.alternatives.size() < mostAlternatives; ++shown) {
            judged.alternatives.push_back(alternativeOf(options[shown]));
        }
    }
    return judged;
}

} // namespace ambrel
