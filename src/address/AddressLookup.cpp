// Looking readings up.
#include "address/AddressLookup.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "address/HouseNumber.h"
#include "address/TidyText.h"
#include "services/Rnumcad.h"

namespace ambrel {
namespace {

/// Municipalities whose streets are compared where the name of the municipality is not certain.
constexpr std::size_t mostNearPlaces = 4;
/// Writings of provinces that are remembered: a file may hold anything in that column.
constexpr std::size_t mostProvinceTexts = 1'000;

} // namespace

AddressLookup::AddressLookup(const std::string& database, std::size_t memory)
    : directory_(database), book_(database, directory_), suggesters_(database, memory), types_(database),
      places_(book_, suggesters_), streets_(directory_, suggesters_, types_) {}

void AddressLookup::addCodeReadings(GivenReadings& readings) {
    const std::size_t count = readings.likely.size();
    for (std::size_t i = 0; i < count; ++i) {
        const AddressParts& reading = readings.likely[i];
        const std::size_t blank = reading.street.find(' ');
        if (!reading.type.empty() || blank == std::string::npos || blank > 3) {
            continue;
        }
        const std::string word = tidied(std::string_view(reading.street).substr(0, blank));
        if (!types_.isCode(word)) {
            continue;
        }
        AddressParts split = reading;
        split.type = word;
        split.street = withoutBlanks(std::string_view(reading.street).substr(blank));
        readings.likely.push_back(std::move(split));
    }
}

void AddressLookup::ask(AddressParts&& reading, AddressFinding& finding) {
    AddressQuestion& question = finding.question;
    question.parts = std::move(reading);
    const AddressParts& parts = question.parts;
    question.municipality = tidied(parts.municipality);
    question.street = tidied(parts.street);
    question.postalCode = readPostalCode(parts.postalCode);
    question.hasOtherText =
        question.postalCode.empty() && parts.postalCode.find_first_not_of("0 -.") != std::string::npos;
    if (!parts.province.empty()) {
        question.province = provinceOf(parts.province);
        question.isProvinceUnknown = question.province.empty();
    }
    // In "1O" the letter may be a nought.
    question.number =
        readHouseNumber(parts.numberSuffix == "O" ? parts.number + parts.numberSuffix : parts.number);
    if (parts.number.find_first_of("Kk") != std::string::npos && tidied(parts.number).starts_with("KM")) {
        question.number = {};
    }
}

/// The digits of a province as it was written.
const std::string& AddressLookup::provinceOf(const std::string& written) {
    if (provinces_.size() >= mostProvinceTexts) {
        provinces_.clear();
    }
    const auto [known, isNew] = provinces_.try_emplace(written);
    if (isNew) {
        known->second = suggesters_.provinces.digitsOf(written);
    }
    return known->second;
}

void AddressLookup::findAllPlaces(std::span<AddressFinding* const> findings) {
    std::vector<std::string_view> names;
    names.reserve(findings.size());
    for (const AddressFinding* finding : findings) {
        names.push_back(finding->question.municipality);
    }
    book_.expect(names);
    for (AddressFinding* finding : findings) {
        findPlaces(*finding);
    }
    for (const AddressFinding* finding : findings) {
        for (const PlaceOption& place : finding->places) {
            streets_.expectExact(finding->question, place);
        }
    }
}

void AddressLookup::findPlaces(AddressFinding& finding) {
    const AddressQuestion& question = finding.question;
    finding.places = places_.exact(question);
    // Namesakes: the postal code may choose among them.
    if (finding.places.size() > 1 && !question.postalCode.empty()) {
        std::vector<PlaceOption> chosen;
        std::ranges::copy_if(finding.places, std::back_inserter(chosen), [&](const PlaceOption& one) {
            return one.municipality->hasPostalCode(question.postalCode);
        });
        if (!chosen.empty()) {
            finding.places = std::move(chosen);
        }
    }
}

void AddressLookup::findStreets(AddressFinding& finding) {
    for (const PlaceOption& place : finding.places) {
        streets_.addExact(finding.question, place, finding.options);
    }
}

void AddressLookup::findNear(AddressFinding& finding) {
    if (finding.places.empty()) {
        finding.places = places_.near(finding.question);
    }
    finding.options.clear();
    std::size_t tried = 0;
    for (const PlaceOption& place : finding.places) {
        if (tried++ == mostNearPlaces) {
            break;
        }
        const std::size_t before = finding.options.size();
        streets_.addExact(finding.question, place, finding.options);
        if (finding.options.size() == before) {
            streets_.addNear(finding.question, place, finding.options);
        }
    }
}

} // namespace ambrel
