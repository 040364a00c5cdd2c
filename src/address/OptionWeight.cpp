// Weighing the evidence for an option.
#include "address/OptionWeight.h"

#include <algorithm>

#include "address/Doubts.h"

namespace ambrel {
namespace {

/// What the postal code given says about a doubt.
double inTheLightOf(double doubt, bool isCodeGiven, bool agrees) {
    return !isCodeGiven ? doubt : doubt * (agrees ? doubt::ifCodeAgrees : doubt::ifCodeDiffers);
}

/// Whether all rows name another municipality than this one.
bool isOthers(const std::vector<StreetStretch>& stretches, const std::string& ineCode) {
    return std::ranges::all_of(
        stretches, [&](const StreetStretch& one) { return !one.ineCode.empty() && one.ineCode != ineCode; });
}

} // namespace

void weigh(AddressOption& option, const AddressQuestion& question) {
    const Municipality& municipality = *option.place.municipality;
    const StreetCode& found =
        option.code.emplace(streetCode(option.stretches, municipality.ineCode, question.number));
    const bool isCodeGiven = !question.postalCode.empty();
    const std::string& code = question.postalCode;
    const bool isOfStretch =
        found.isSure()
            ? found.stretch.postalCode == code
            : std::ranges::find(option.stretches, code, &StreetStretch::postalCode) != option.stretches.end();
    const bool isOfPlace = municipality.hasPostalCode(code);
    // Where all streets share a code, it says nothing about the street.
    const bool tells = municipality.postalCodes.size() > 1 || !isOfStretch;
    option.doubt = option.otherDoubt + inTheLightOf(option.place.doubt, isCodeGiven, isOfPlace) +
                   inTheLightOf(option.nameDoubt, isCodeGiven && tells, isOfStretch) +
                   inTheLightOf(option.typeDoubt, isCodeGiven && tells, isOfStretch);
    if ((option.nameDoubt > 0 || option.typeDoubt > 0) && !question.parts.rest.empty()) {
        option.doubt += doubt::unread;
    }
    if (option.place.source == PlaceSource::Code && isOthers(option.stretches, municipality.ineCode)) {
        option.doubt += doubt::otherIneCode;
    }
    if (option.doubt > 0 && question.lacksCode()) {
        option.doubt += doubt::noCode;
    }
    double sum = option.doubt;
    if (found.certainty == StreetCode::Certainty::NoStretch ||
        found.certainty == StreetCode::Certainty::Unclear) {
        sum += doubt::numberOutside;
    }
    if (question.lacksCode() && option.doubt == 0) {
        sum += doubt::noCode;
    } else if (!question.lacksCode() && found.isSure() && !isOfStretch) {
        sum += doubt::otherCode;
    }
    option.confidence = std::max(0.0, 1 - sum);
}

} // namespace ambrel
