// From what was found to a verdict and the corrected parts.
#include "address/OptionVerdict.h"

#include <algorithm>

#include "address/GivenReadings.h"
#include "address/PlainText.h"
#include "data/Province.h"
#include "services/Rnumcad.h"

namespace ambrel {
namespace {

using Certainty = StreetCode::Certainty;

/// Fills a part and notes the change, if it is one.
class ChangeList {
public:
    explicit ChangeList(JudgedAddress& judged) : judged_(judged) {}

    void note(JudgedPart part, std::string_view from, std::string_view to) {
        judged_.changes.push_back({part, std::string(withoutBlanks(from)), std::string(to)});
    }
    void noteUnlessSame(JudgedPart part, std::string_view from, std::string_view to) {
        if (!hasSameLetters(from, to)) {
            note(part, from, to);
        }
    }

private:
    JudgedAddress& judged_;
};

/// The parts as given, from which a verdict without a street starts.
JudgedAddress asGiven(const AddressQuestion& question) {
    const AddressParts& parts = question.parts;
    JudgedAddress judged;
    judged.municipality = parts.municipality;
    judged.province = question.province;
    judged.type = parts.type;
    judged.street = parts.street;
    judged.number = writtenNumber(parts);
    judged.rest = writtenRest(parts);
    judged.postalCode = question.postalCode;
    return judged;
}

void takePlace(JudgedAddress& judged, const PlaceOption& place, const AddressQuestion& question) {
    const Municipality& municipality = *place.municipality;
    ChangeList changes(judged);
    judged.ineCode = municipality.ineCode;
    judged.municipality = municipality.name;
    judged.province =
        municipality.provinces.empty() ? provinceOf(municipality.ineCode) : municipality.provinces.front();
    changes.noteUnlessSame(JudgedPart::Municipality, question.parts.municipality, municipality.name);
    // A postal code says the province, too.
    const bool isSaid = !question.province.empty() || !question.postalCode.empty();
    if (question.isProvinceUnknown || !isSaid || !isInProvince(municipality, question.province)) {
        changes.note(JudgedPart::Province, question.parts.province, judged.province);
    }
}

void takeStreet(JudgedAddress& judged, const AddressOption& option, const AddressQuestion& question) {
    ChangeList changes(judged);
    judged.street = option.street;
    if (option.isRenamed) {
        changes.note(JudgedPart::Street, question.parts.street, option.street);
    }
    if (option.type.empty()) {
        judged.type = question.parts.type; // the tables do not say
        return;
    }
    judged.type = option.type;
    if (question.parts.type.empty() || option.typeDoubt > 0) {
        changes.note(JudgedPart::Type, question.parts.type, option.type);
    }
}

void takeCode(JudgedAddress& judged, const std::string& code, const AddressQuestion& question) {
    judged.postalCode = code;
    if (code != withoutBlanks(question.parts.postalCode)) {
        ChangeList(judged).note(JudgedPart::PostalCode,
                                question.lacksCode() ? std::string() : question.parts.postalCode, code);
    }
}

/// Whether a change replaces something that was written, other than by completing it.
bool isCorrection(const AddressChange& change, const AddressOption& option) {
    return !change.from.empty() &&
           !(change.part == JudgedPart::Municipality && option.place.source == PlaceSource::Language);
}

} // namespace

Verdict verdictOn(const AddressOption& option, const AddressQuestion& question,
                  const ValidationOptions& options) {
    const bool isNear = option.hasSlips || option.place.source == PlaceSource::Near;
    const Certainty certainty = option.code->certainty;
    const bool isOutside = certainty == Certainty::NoStretch || certainty == Certainty::Unclear;
    if (option.isPart || option.place.isPart ||
        (!option.isCertain() && 1 - option.doubt < options.threshold) || (isNear && isOutside)) {
        return Verdict::Doubtful;
    }
    switch (certainty) {
    case Certainty::Several:
        return Verdict::Ambiguous;
    case Certainty::NoStretch:
    case Certainty::Unclear: // such as 0 or 99999, which no stretch can hold
        return Verdict::NumberOutside;
    case Certainty::NoNumber:
        return Verdict::NoNumber;
    case Certainty::NoCode:
        return Verdict::Doubtful;
    case Certainty::Sure:
        break;
    }
    if (!question.lacksCode() && option.code->stretch.postalCode != question.postalCode) {
        return Verdict::OtherCode;
    }
    return Verdict::Correct;
}

JudgedAddress judgedAs(const AddressOption& option, Verdict verdict, const AddressQuestion& question) {
    JudgedAddress judged;
    judged.verdict = verdict;
    judged.confidence = option.confidence;
    judged.number = writtenNumber(question.parts);
    judged.rest = writtenRest(question.parts);
    takePlace(judged, option.place, question);
    takeStreet(judged, option, question);
    if (option.code->isSure()) {
        judged.key = option.code->stretch.key;
        takeCode(judged, option.code->stretch.postalCode, question);
    } else {
        judged.postalCode = question.postalCode;
    }
    if (verdict == Verdict::Correct && !judged.changes.empty()) {
        const bool isCorrected = std::ranges::any_of(
            judged.changes, [&](const AddressChange& change) { return isCorrection(change, option); });
        judged.verdict = isCorrected ? Verdict::Corrected : Verdict::Completed;
    }
    return judged;
}

JudgedAddress judgedWithoutStreet(const PlaceOption* place, Verdict verdict,
                                  const AddressQuestion& question) {
    JudgedAddress judged = asGiven(question);
    judged.verdict = verdict;
    if (place != nullptr) {
        takePlace(judged, *place, question);
        const Municipality& municipality = *place->municipality;
        if (municipality.hasOneCode && question.lacksCode()) {
            takeCode(judged, municipality.postalCodes.front(), question);
        }
    }
    return judged;
}

AddressAlternative alternativeOf(const AddressOption& option) {
    AddressAlternative alternative = alternativeOf(option.place);
    alternative.points = option.confidence;
    alternative.type = option.type;
    alternative.street = option.street;
    alternative.postalCodes.clear();
    for (const StreetStretch& stretch : option.stretches) {
        if (!stretch.postalCode.empty()) {
            alternative.postalCodes.push_back(stretch.postalCode);
        }
    }
    std::ranges::sort(alternative.postalCodes);
    auto& codes = alternative.postalCodes;
    codes.erase(std::unique(codes.begin(), codes.end()), codes.end());
    return alternative;
}

AddressAlternative alternativeOf(const PlaceOption& place) {
    const Municipality& municipality = *place.municipality;
    return {.points = std::max(0.0, 1 - place.doubt),
            .ineCode = municipality.ineCode,
            .municipality = municipality.name,
            .province = municipality.provinces.empty() ? std::string() : municipality.provinces.front(),
            .postalCodes = municipality.postalCodes};
}

} // namespace ambrel
