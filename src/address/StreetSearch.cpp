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
constexpr std::size_t mostKept = 10'000;

/// "DE ALCALA" after a type is the street ALCALA: the small words belong to the type.
std::string_view withoutLink(std::string_view street) {
    for (const std::string_view link : {"DE LAS ", "DE LOS ", "DE LA ", "DEL ", "DE "}) {
        if (street.starts_with(link)) {
            return street.substr(link.size());
        }
    }
    return street;
}

/// The other names under which tables may hold what was written, without a difference that would be a change.
std::vector<std::string> otherNames(const AddressQuestion& question) {
    std::vector<std::string> names;
    const auto add = [&](std::string_view name) {
        if (name != question.street && std::ranges::find(names, name) == names.end()) {
            names.emplace_back(name);
        }
    };
    const std::string plain = withoutAccents(question.street);
    add(plain);
    if (!question.parts.type.empty()) {
        add(withoutLink(question.street));
        add(withoutLink(plain));
    }
    return names;
}

} // namespace

void StreetSearch::addExact(const AddressQuestion& question, const PlaceOption& place,
                            std::vector<AddressOption>& options) {
    if (question.street.empty()) {
        return;
    }
    const auto addNamed = [&](const std::string& name) {
        std::vector<StreetStretch> stretches = directory_.stretches(*place.municipality, name);
        if (stretches.empty()) {
            return false;
        }
        AddressOption option{.place = place, .street = stretches.front().name};
        option.isRenamed = option.street != name; // a name too long for the table
        addTypes(question, std::move(option), std::move(stretches), options);
        return true;
    };
    if (!addNamed(question.street)) {
        std::ranges::any_of(otherNames(question), addNamed); // up to the first that is found
    }
}

void StreetSearch::expectExact(const AddressQuestion& question, const PlaceOption& place) {
    directory_.expectStretches(*place.municipality, question.street);
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
        option.nameDoubt = nameDoubt(likeness);
        option.isPart = likeness.kind == NameLikeness::Kind::Part;
        option.hasSlips = likeness.slips > 0;
        option.isRenamed = likeness.kind != NameLikeness::Kind::Same;
        if (option.hasSlips && !option.isPart) {
            option.otherDoubt = otherDoubt(likeness, written, *place.municipality);
        }
        addTypes(question, std::move(option), directory_.stretches(*place.municipality, near.name), options);
    }
}

/// What is written may be right, and the street missing from the tables.
double StreetSearch::otherDoubt(const NameLikeness& likeness, std::string_view written,
                                const Municipality& municipality) {
    const bool isReal = std::ranges::any_of(likeness.words, [&](const std::string& word) {
        return std::ranges::any_of(municipality.provinces, [&](const std::string& province) {
            return suggesters_.streets.hasWord(province, word);
        });
    });
    return (isReal ? doubt::realWord : 0) + (isAnyStreet(written) ? doubt::realName : 0) +
           (likeness.isInflected ? doubt::inflection : 0);
}

bool StreetSearch::isAnyStreet(std::string_view name) {
    if (const suggest::TableStamp now = directory_.streetStamp();
        now != anyStreetStamp_ || anyStreet_.size() >= mostKept) {
        anyStreet_.clear();
        anyStreetStamp_ = now;
    }
    if (const auto known = anyStreet_.find(name); known != anyStreet_.end()) {
        return known->second;
    }
    const bool isStreet =
        directory_.hasStreet(std::string(name)) || directory_.hasStreet(withoutAccents(name));
    return anyStreet_.emplace(name, isStreet).first->second;
}

void StreetSearch::addTypes(const AddressQuestion& question, AddressOption option,
                            std::vector<StreetStretch> stretches, std::vector<AddressOption>& options) {
    const std::string& written = question.parts.type;
    std::vector<std::string_view> types; // of the stretches, which stay where they are
    for (const StreetStretch& one : stretches) {
        if (std::ranges::find(types, one.type) == types.end()) {
            types.push_back(one.type);
        }
    }
    // As in the exact look-ups: rows of the type, or else those without one, or else all.
    unsigned bestFit = 0;
    for (const std::string_view type : types) {
        bestFit = std::max(bestFit, written.empty() ? 0 : types_.fit(type, written));
    }
    const bool hasBlank = std::ranges::find(types, std::string_view()) != types.end();
    for (const std::string_view type : types) {
        const bool fits =
            written.empty() || (bestFit > 0 ? types_.fit(type, written) == bestFit : type.empty());
        if (!fits && bestFit == 0 && hasBlank) {
            continue;
        }
        AddressOption& one = options.emplace_back(types.size() == 1 ? std::move(option) : option);
        one.type = type;
        one.typeDoubt = fits ? 0 : doubt::otherType;
        if (types.size() == 1) {
            one.stretches = std::move(stretches);
        } else {
            std::ranges::copy_if(stretches, std::back_inserter(one.stretches),
                                 [&](const StreetStretch& stretch) { return stretch.type == type; });
        }
    }
}

} // namespace ambrel
