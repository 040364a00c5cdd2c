// Searching streets.
#include "address/StreetSearch.h"

#include <algorithm>

#include "address/Doubts.h"
#include "address/NameDoubt.h"
#include "address/PlainText.h"
#include "address/TidyText.h"

namespace ambrel {
namespace {

constexpr std::size_t mostNear = 6;

/// "DE ALCALA" after a type is the street ALCALA: the small words belong to the type.
std::string_view withoutLink(std::string_view street) {
    for (const std::string_view link : {"DE LAS ", "DE LOS ", "DE LA ", "DEL ", "DE "}) {
        if (street.starts_with(link)) {
            return street.substr(link.size());
        }
    }
    return street;
}

/// The names under which tables may hold what was written, without a difference that would be a change.
std::vector<std::string> exactNames(const AddressQuestion& question) {
    std::vector<std::string> names{question.street};
    const auto add = [&](std::string name) {
        if (std::ranges::find(names, name) == names.end()) {
            names.push_back(std::move(name));
        }
    };
    const std::string plain = withoutAccents(question.street);
    add(plain);
    if (!question.parts.type.empty()) {
        add(std::string(withoutLink(question.street)));
        add(std::string(withoutLink(plain)));
        add(tidied(question.parts.type) + ' ' + question.street);
    }
    return names;
}

} // namespace

void StreetSearch::addExact(const AddressQuestion& question, const PlaceOption& place,
                            std::vector<AddressOption>& options) {
    if (question.street.empty()) {
        return;
    }
    for (const std::string& name : exactNames(question)) {
        std::vector<StreetStretch> stretches = directory_.stretches(*place.municipality, name);
        if (!stretches.empty()) {
            addTypes(question, {.place = place, .street = name}, std::move(stretches), options);
            return;
        }
    }
}

void StreetSearch::addNear(const AddressQuestion& question, const PlaceOption& place,
                           std::vector<AddressOption>& options) {
    const std::string_view written =
        question.parts.type.empty() ? question.street : withoutLink(question.street);
    for (const suggest::NearName& near : suggesters_.streets.nearNames(
             {.text = question.street, .type = question.parts.type, .ineCode = place.municipality->ineCode},
             mostNear)) {
        const NameLikeness likeness = compareNames(written, near.name);
        AddressOption option{.place = place, .street = near.name, .points = near.points};
        option.nameDoubt = nameDoubt(likeness) + realWordDoubt(likeness, *place.municipality);
        option.isPart = likeness.kind == NameLikeness::Kind::Part;
        option.hasSlips = likeness.slips > 0;
        option.isRenamed = likeness.kind != NameLikeness::Kind::Same;
        addTypes(question, std::move(option), directory_.stretches(*place.municipality, near.name), options);
    }
}

/// A word that other streets have is rather right than wrong: this one may be missing from the tables.
double StreetSearch::realWordDoubt(const NameLikeness& likeness, const Municipality& municipality) {
    const bool isReal = std::ranges::any_of(likeness.words, [&](const std::string& word) {
        return std::ranges::any_of(municipality.provinces, [&](const std::string& province) {
            return suggesters_.streets.hasWord(province, word);
        });
    });
    return isReal ? doubt::realWord : 0;
}

void StreetSearch::addTypes(const AddressQuestion& question, AddressOption option,
                            std::vector<StreetStretch> stretches, std::vector<AddressOption>& options) {
    const std::string& written = question.parts.type;
    std::vector<std::string> types;
    for (const StreetStretch& one : stretches) {
        if (std::ranges::find(types, one.type) == types.end()) {
            types.push_back(one.type);
        }
    }
    // As in the exact look-ups: rows of the type, or else those without one, or else all.
    const bool isSaid = !written.empty();
    const bool hasType = isSaid && std::ranges::any_of(types, [&](const std::string& type) {
                             return types_.fits(type, written);
                         });
    const bool hasBlank = isSaid && std::ranges::find(types, std::string()) != types.end();
    for (const std::string& type : types) {
        AddressOption one = option;
        one.type = type;
        const bool fits = !isSaid || (hasType ? types_.fits(type, written) : type.empty());
        one.typeDoubt = fits ? 0 : doubt::otherType;
        if (!fits && hasBlank && !hasType) {
            continue;
        }
        std::ranges::copy_if(stretches, std::back_inserter(one.stretches),
                             [&](const StreetStretch& stretch) { return stretch.type == type; });
        options.push_back(std::move(one));
    }
}

} // namespace ambrel
