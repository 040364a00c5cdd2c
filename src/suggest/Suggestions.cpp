// The public face of the suggestions.
#include "suggest/Suggestions.h"

#include <algorithm>
#include <cmath>

#include "suggest/MunicipalitySuggester.h"
#include "suggest/ProvinceText.h"
#include "suggest/StreetSuggester.h"

namespace ambrel {
namespace {

constexpr double leastOfBoth = 0.5;
/// Municipalities whose streets are tried where the municipality is not certain.
constexpr std::size_t mostMunicipalities = 12;

std::chrono::steady_clock::time_point after(std::chrono::milliseconds slice) {
    return std::chrono::steady_clock::now() + slice;
}

} // namespace

class Suggestions::Implementation {
public:
    Implementation(const std::string& database, const SuggestionOptions& options)
        : provinces(database), municipalities(database, options.otherNames, provinces),
          streets(database, options.memory, municipalities) {}

    suggest::ProvinceText provinces;
    suggest::MunicipalitySuggester municipalities;
    suggest::StreetSuggester streets;
};

Suggestions::Suggestions(std::string database, SuggestionOptions options)
    : implementation_(std::make_unique<Implementation>(database, options)) {}

Suggestions::~Suggestions() = default;

bool Suggestions::prepare(const MunicipalityQuery& query, std::chrono::milliseconds slice) {
    static_cast<void>(query); // all municipalities are read together
    return implementation_->municipalities.renew(after(slice));
}

bool Suggestions::prepare(const StreetQuery& query, std::chrono::milliseconds slice) {
    return implementation_->streets.renew(query, after(slice));
}

std::vector<SuggestedMunicipality> Suggestions::municipalities(const MunicipalityQuery& query,
                                                               std::size_t most) {
    return implementation_->municipalities.suggest(query, most);
}

std::vector<SuggestedStreet> Suggestions::streets(const StreetQuery& query, std::size_t most) {
    return implementation_->streets.suggest(query, most);
}

std::vector<SuggestedStreet> Suggestions::addresses(const AddressQuery& query, std::size_t most) {
    std::vector<SuggestedStreet> best;
    for (const SuggestedMunicipality& municipality : municipalities(query.municipality, mostMunicipalities)) {
        const double share = std::sqrt(municipality.points);
        if (most == 0 || (best.size() >= most && best[most - 1].points >= share)) {
            break; // no street of this or a later municipality can be better
        }
        for (SuggestedStreet& street :
             streets({.text = query.street, .type = query.type, .ineCode = municipality.ineCode}, most)) {
            street.points *= share;
            if (street.points >= leastOfBoth) {
                best.push_back(std::move(street));
            }
        }
        std::ranges::stable_sort(best, std::greater<>(), &SuggestedStreet::points);
    }
    best.resize(std::min(best.size(), most));
    return best;
}

std::string Suggestions::provinceNamed(const std::string& text) {
    return implementation_->provinces.digitsOf(text);
}

std::string Suggestions::provinceName(const std::string& province) {
    return implementation_->provinces.nameOf(province);
}

std::size_t Suggestions::memoryInUse() const {
    return implementation_->municipalities.bytes() + implementation_->streets.bytes();
}

} // namespace ambrel
