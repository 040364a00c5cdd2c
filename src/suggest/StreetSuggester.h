// Streets of a municipality, of a postal code, of a province.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "suggest/LiveRows.h"
#include "suggest/MunicipalitySuggester.h"
#include "suggest/StreetStore.h"
#include "suggest/StreetTypes.h"
#include "suggest/Suggestions.h"

namespace ambrel::suggest {

/// A name that may have been meant.
struct NearName {
    std::string name;
    double points;
};

class StreetSuggester {
public:
    using Clock = std::chrono::steady_clock;

    StreetSuggester(const std::string& database, std::size_t memory, MunicipalitySuggester& municipalities)
        : municipalities_(municipalities), store_(database, memory), types_(database), live_(database) {}

    [[nodiscard]] bool renew(const StreetQuery& query, Clock::time_point end);
    [[nodiscard]] std::vector<SuggestedStreet> suggest(const StreetQuery& query, std::size_t most);
    [[nodiscard]] std::size_t bytes() const { return store_.bytes(); }

    /// The names of the best streets, each once, as they were read last: for those who read the rows anyway.
    [[nodiscard]] std::vector<NearName> nearNames(const StreetQuery& query, std::size_t most);
    /// Whether a folded word stands in the name of any street of a province.
    [[nodiscard]] bool hasWord(const std::string& province, std::string_view folded);

private:
    struct Place;
    struct Candidate;
    struct Ranked;
    [[nodiscard]] Ranked rank(const StreetQuery& query, const TypedStreet& typed, const Place& place,
                              std::size_t most);
    [[nodiscard]] Place place(const StreetQuery& query) const;
    [[nodiscard]] const std::string* owner(const Place& place, const StreetPlace& row) const;
    void collect(const PlacedStreets& streets, const TypedStreet& typed, TypeSet wanted,
                 const std::string& type, std::vector<Candidate>& candidates) const;
    [[nodiscard]] std::optional<SuggestedStreet> readAgain(const Candidate& candidate, const Place& place,
                                                           const TypedStreet& typed, const std::string& text);

    MunicipalitySuggester& municipalities_;
    StreetStore store_;
    StreetTypes types_;
    LiveRows live_;
};

} // namespace ambrel::suggest
