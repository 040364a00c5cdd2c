// Finding and ranking streets.
#include "suggest/StreetSuggester.h"

#include <algorithm>
#include <cmath>
#include <set>
#include <tuple>

#include "data/Province.h"
#include "suggest/Marks.h"

namespace ambrel::suggest {
namespace {

constexpr double least = 0.5;

/// How a street's type goes with what was typed.
enum class TypeFit { Fits, NotSaid, Differs };

} // namespace

/// Where streets are sought.
struct StreetSuggester::Place {
    const Municipality* municipality = nullptr;
    std::string postalCode; // if no municipality
    std::vector<std::string> provinces;
    std::string key; // says all of the above, and which rows are whose
};

struct StreetSuggester::Candidate {
    double points;
    const PlacedStreets* streets;
    const PlacedStreet* street;
    std::uint16_t reading;
    bool isBeginning;
    TypeFit fit;
    std::uint32_t farness;
    std::size_t length;

    [[nodiscard]] std::string_view name() const { return streets->province->pool.stored(street->name); }
    [[nodiscard]] const std::string& type() const { return streets->province->types[street->type]; }
    [[nodiscard]] auto rank() const {
        return std::tuple(-std::round(points * 1000), !street->isOwn, !isBeginning, fit, farness, length,
                          name(), std::string_view(type()), std::string_view(street->ineCode));
    }
};

StreetSuggester::Place StreetSuggester::place(const StreetQuery& query) const {
    Place found;
    // Whose a row is depends on all municipalities, unless one of them is given.
    const std::string ownersKey = ' ' + std::to_string(municipalities_.generation());
    if (!query.ineCode.empty()) {
        found.municipality = municipalities_.find(query.ineCode);
        if (found.municipality != nullptr) {
            found.provinces = found.municipality->provinces;
            found.key = "I" + query.ineCode + (found.municipality->hasOneCode ? "S" : "");
            for (const std::string& code : found.municipality->postalCodes) {
                found.key += code;
            }
        }
    } else if (!query.postalCode.empty()) {
        found.postalCode = query.postalCode;
        found.provinces = {provinceOf(query.postalCode)};
        found.key = "C" + query.postalCode + ownersKey;
    } else if (!query.province.empty()) {
        found.provinces = {query.province};
        found.key = "P" + ownersKey;
    }
    return found;
}

const std::string* StreetSuggester::owner(const Place& place, const StreetPlace& row) const {
    static const std::string unknown;
    if (place.municipality != nullptr) {
        return place.municipality->owns(row.postalCode, row.ineCode) ? &place.municipality->ineCode : nullptr;
    }
    if (!place.postalCode.empty() && row.postalCode != place.postalCode) {
        return nullptr;
    }
    if (const Municipality* named = municipalities_.find(row.ineCode)) {
        return &named->ineCode;
    }
    const Municipality* const only = municipalities_.onlyOneWith(row.postalCode);
    return only != nullptr ? &only->ineCode : &unknown;
}

bool StreetSuggester::renew(const StreetQuery& query, Clock::time_point end) {
    if (!municipalities_.renew(end)) {
        return false;
    }
    types_.prepare();
    return std::ranges::all_of(place(query).provinces,
                               [&](const std::string& province) { return store_.renew(province, end); });
}

void StreetSuggester::collect(const PlacedStreets& streets, const TypedStreet& typed, TypeSet wanted,
                              const std::string& type, std::vector<Candidate>& candidates) const {
    const NamePool& pool = streets.province->pool;
    std::vector<TypeSet> typesOf;
    for (const std::string& code : streets.province->types) {
        typesOf.push_back(types_.ofCode(code));
    }
    for (const NameMatch& match : matchNames(streets.view, {typed.words, typed.readings}, least)) {
        const TypedStreet::Reading& reading = typed.readings[match.reading];
        auto street = std::ranges::lower_bound(streets.streets, match.name, {}, &PlacedStreet::name);
        for (; street != streets.streets.end() && street->name == match.name; ++street) {
            const TypeSet types = typesOf[street->type];
            const bool isWanted =
                type.empty() || streets.province->types[street->type] == type || (types & wanted) != 0;
            const bool isTyped = reading.types == 0 || (types & reading.types) != 0;
            const TypeFit fit = !isWanted || !isTyped                ? TypeFit::Differs
                                : type.empty() && reading.types == 0 ? TypeFit::NotSaid
                                                                     : TypeFit::Fits;
            candidates.push_back({match.points, &streets, &*street, match.reading, match.isBeginning, fit,
                                  match.farness + static_cast<std::uint32_t>(reading.first),
                                  pool.joined(match.name).size()});
        }
    }
}

std::optional<SuggestedStreet> StreetSuggester::readAgain(const Candidate& candidate, const Place& place,
                                                          const TypedStreet& typed, const std::string& text) {
    const std::string& ineCode = candidate.street->ineCode;
    const auto judge = [&](const StreetPlace& row) {
        const std::string* const of = owner(place, row);
        return of == nullptr || *of != ineCode ? LiveRows::Belongs::No
               : row.ineCode == ineCode        ? LiveRows::Belongs::WithOwnCode
                                               : LiveRows::Belongs::Yes;
    };
    std::optional<LiveStreet> live;
    bool hasOwn = false;
    for (const std::string& province : place.provinces) {
        live_.add(live, hasOwn, province, candidate.name(), candidate.type(), judge);
    }
    if (!live) {
        return std::nullopt;
    }
    const TypedStreet::Reading& reading = typed.readings[candidate.reading];
    SuggestedStreet suggestion;
    suggestion.points = candidate.points;
    suggestion.name = candidate.name();
    suggestion.type = candidate.type();
    suggestion.key = live->key;
    suggestion.ineCode = ineCode;
    if (const Municipality* municipality = municipalities_.find(ineCode)) {
        suggestion.municipality = municipality->name;
    }
    suggestion.province = ineCode.empty() ? candidate.streets->digits : provinceOf(ineCode);
    suggestion.postalCodes.assign(live->postalCodes.begin(), live->postalCodes.end());
    suggestion.number = reading.number;
    const std::size_t begin = typed.words[reading.first].begin;
    const NameWord& last = typed.words[reading.last - 1];
    suggestion.marks = matchingLetters(
        suggestion.name, std::string_view(text).substr(begin, last.begin + last.length - begin));
    return suggestion;
}

/// Candidates, of which the first few are in order.
struct StreetSuggester::Ranked {
    std::vector<std::shared_ptr<const PlacedStreets>> parts; // alive while candidates point into them
    std::vector<Candidate> candidates;
};

StreetSuggester::Ranked StreetSuggester::rank(const StreetQuery& query, const TypedStreet& typed,
                                              const Place& place, std::size_t most) {
    Ranked ranked;
    const TypeSet wanted = query.type.empty() ? 0 : types_.ofText(query.type);
    for (const std::string& province : place.provinces) {
        ranked.parts.push_back(
            store_.placed(province, place.key, [&](const StreetPlace& row) { return owner(place, row); }));
        collect(*ranked.parts.back(), typed, wanted, query.type, ranked.candidates);
    }
    const std::size_t all = ranked.candidates.size();
    const std::size_t sorted = std::min(all, 4 * std::min(most, all) + 16);
    std::ranges::partial_sort(ranked.candidates,
                              ranked.candidates.begin() + static_cast<std::ptrdiff_t>(sorted), {},
                              &Candidate::rank);
    return ranked;
}

std::vector<SuggestedStreet> StreetSuggester::suggest(const StreetQuery& query, std::size_t most) {
    static_cast<void>(renew(query, Clock::time_point::max()));
    const TypedStreet typed = readStreet(query.text);
    const Place place = this->place(query);
    if (typed.words.empty() || place.provinces.empty()) {
        return {};
    }
    const Ranked ranked = rank(query, typed, place, most);
    std::vector<SuggestedStreet> suggestions;
    std::set<std::tuple<std::string_view, std::string, std::string>> shown;
    for (const Candidate& candidate : ranked.candidates) {
        if (suggestions.size() == most) {
            break;
        }
        if (!shown.emplace(candidate.name(), candidate.type(), candidate.street->ineCode).second) {
            continue; // the same street in another of the municipality's provinces
        }
        if (auto suggestion = readAgain(candidate, place, typed, query.text)) {
            suggestions.push_back(std::move(*suggestion));
        }
    }
    return suggestions;
}

std::vector<NearName> StreetSuggester::nearNames(const StreetQuery& query, std::size_t most) {
    static_cast<void>(renew(query, Clock::time_point::max()));
    const TypedStreet typed = readStreet(query.text);
    const Place place = this->place(query);
    std::vector<NearName> names;
    if (typed.words.empty() || place.provinces.empty()) {
        return names;
    }
    for (const Candidate& candidate : rank(query, typed, place, most).candidates) {
        if (names.size() == most) {
            break;
        }
        if (std::ranges::find(names, candidate.name(), &NearName::name) == names.end()) {
            names.push_back({std::string(candidate.name()), candidate.points});
        }
    }
    return names;
}

bool StreetSuggester::hasWord(const std::string& province, std::string_view folded) {
    static_cast<void>(store_.renew(province, Clock::time_point::max()));
    return store_.hasWord(province, folded);
}

} // namespace ambrel::suggest
