// Reads the tables in the order in which one explains the next.
#include "directory/StoredState.h"

#include <string>
#include <unordered_map>

#include "directory/LeadingZeros.h"

namespace ambrel::directory {
namespace {

/// Municipalities by name; of several, those in the province of a postal code.
class PlacesByName {
public:
    explicit PlacesByName(const std::vector<StoredPlace>& places) {
        for (const StoredPlace& place : places) {
            std::vector<PlaceCode>& its = places_[place.name];
            if (!place.isEntity && (its.empty() || its.back() != place.place)) {
                its.push_back(place.place);
            }
        }
    }
    [[nodiscard]] std::vector<PlaceCode> find(std::string_view name, std::string_view postalCode) const {
        const auto found = places_.find(std::string(name));
        if (found == places_.end()) {
            return {};
        }
        std::vector<PlaceCode> near;
        std::ranges::copy_if(found->second, std::back_inserter(near), [&](PlaceCode place) {
            return digits(place, 5).substr(0, 2) == postalCode.substr(0, 2);
        });
        return near.empty() ? found->second : near;
    }

private:
    std::unordered_map<std::string, std::vector<PlaceCode>> places_;
};

} // namespace

StoredState readStoredState(const StoredTables& tables, const LoadingProgress& progress) {
    StoredState state;
    if (tables.provenance != nullptr) {
        state.earlier = readProvenance(*tables.provenance, progress);
    }
    state.places = readStoredPlaces(*tables.places, state.earlier);
    const PlacesByName byName(state.places);
    state.streets = readStoredStreets(
        *tables.streets, state.earlier,
        [&](std::string_view name, std::string_view code) { return byName.find(name, code); }, progress);
    return state;
}

} // namespace ambrel::directory
