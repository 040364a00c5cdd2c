// Searching municipalities.
#include "address/PlaceSearch.h"

#include <algorithm>

#include "address/Doubts.h"
#include "address/NameDoubt.h"
#include "address/PlainText.h"

namespace ambrel {
namespace {

constexpr std::size_t mostNear = 6;

std::vector<PlaceOption> optionsOf(const std::vector<MunicipalityPointer>& found, PlaceSource source,
                                   double doubt) {
    std::vector<PlaceOption> options;
    options.reserve(found.size());
    for (const MunicipalityPointer one : found) {
        options.push_back({.municipality = one, .source = source, .doubt = doubt});
    }
    return options;
}

PlaceOption nearOption(MunicipalityPointer municipality, const SuggestedMunicipality& suggested,
                       const std::string& written) {
    const NameLikeness likeness =
        compareNames(written, suggested.found.empty() ? suggested.name : suggested.found);
    PlaceOption option{.municipality = municipality, .points = suggested.points};
    option.doubt = nameDoubt(likeness);
    option.isPart = likeness.kind == NameLikeness::Kind::Part;
    if (suggested.isLocality) {
        option.source = PlaceSource::Locality;
        option.doubt += doubt::locality;
    } else if (likeness.slips > 0 || option.isPart) {
        option.source = PlaceSource::Near;
    } else if (!suggested.found.empty()) {
        option.source = PlaceSource::Language;
        option.doubt += doubt::otherLanguage;
    }
    return option;
}

} // namespace

std::vector<PlaceOption> PlaceSearch::exact(const AddressQuestion& question) {
    std::vector<PlaceOption> options;
    if (question.municipality.empty()) {
        if (!question.postalCode.empty()) {
            options =
                optionsOf(book_.withPostalCode(question.postalCode), PlaceSource::Code, doubt::fromCode);
        }
    } else {
        options = optionsOf(book_.named(question.municipality), PlaceSource::Name, 0);
        if (options.empty()) {
            if (const std::string plain = withoutAccents(question.municipality);
                plain != question.municipality) {
                options = optionsOf(book_.named(plain), PlaceSource::Name, 0);
            }
        }
    }
    std::erase_if(
        options, [&](const PlaceOption& one) { return !isInProvince(*one.municipality, question.province); });
    return options;
}

std::vector<PlaceOption> PlaceSearch::near(const AddressQuestion& question) {
    std::vector<PlaceOption> options;
    if (question.municipality.empty()) {
        return options;
    }
    for (const SuggestedMunicipality& suggested : suggesters_.municipalities.suggest(
             {.text = question.municipality, .province = question.province}, mostNear)) {
        if (MunicipalityPointer one = book_.find(suggested.ineCode)) {
            options.push_back(nearOption(one, suggested, question.municipality));
        }
    }
    if (!question.province.empty()) {
        for (PlaceOption& one : optionsOf(book_.named(question.municipality), PlaceSource::Name, 0)) {
            if (!isInProvince(*one.municipality, question.province)) {
                one.doubt = doubt::otherProvince;
                options.push_back(std::move(one));
            }
        }
    }
    std::ranges::stable_sort(options, {}, &PlaceOption::doubt);
    return options;
}

} // namespace ambrel
