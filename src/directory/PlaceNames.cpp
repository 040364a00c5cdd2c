// Rows of MUNICIPI from the names and codes of places.
#include "directory/PlaceNames.h"

#include <algorithm>
#include <array>

#include "directory/StreetNames.h"

namespace ambrel::directory {
namespace {

// In the order of their provinces.
constexpr std::array<PlaceCode, 52> capitals = {
    1059,  2003,  3014,  4013,  5019,  6015,  7040,  8019,  9059,  10037, 11012, 12040, 13034,
    14021, 15030, 16078, 17079, 18087, 19130, 20069, 21041, 22125, 23050, 24089, 25120, 26089,
    27028, 28079, 29067, 30030, 31201, 32054, 33044, 34120, 35016, 36038, 37274, 38038, 39075,
    40194, 41091, 42173, 43148, 44216, 45168, 46250, 47186, 48020, 49275, 50297, 51001, 52001};

constexpr std::size_t nameWidth = 53, shortNameWidth = 30;

/// "MONTEROS (LOS)" as "MONTEROS, LOS"; anything longer in brackets is no article.
std::string articleAfterComma(std::string name) {
    const std::size_t bracket = name.rfind(" (");
    if (bracket != std::string::npos && name.ends_with(')') && name.size() - bracket <= 6) {
        name = name.substr(0, bracket) + ", " + name.substr(bracket + 2, name.size() - bracket - 3);
    }
    return name;
}

std::string tableName(std::string_view name) {
    return articleAfterComma(plainCapitals(name)).substr(0, nameWidth);
}

} // namespace

bool isCapital(PlaceCode place) { return std::ranges::binary_search(capitals, place); }

void PlaceNames::addMunicipality(PlaceCode place, std::string_view name) {
    places_.try_emplace(place, tableName(name));
}

bool PlaceNames::addUnit(PlaceCode place, std::uint32_t unit, std::string_view entity,
                         std::string_view nucleus) {
    std::vector<std::string>& names = units_[unitOf(place, unit)];
    for (const std::string_view name : {entity, nucleus}) {
        if (name.empty() || name.front() == '*') {
            continue;
        }
        if (std::string plain = tableName(name); std::ranges::find(names, plain) == names.end()) {
            if (names.size() == OfficialPlaceKey::mostNames) {
                return false;
            }
            names.push_back(std::move(plain));
        }
    }
    return true;
}

void PlaceNames::setUnitName(const OfficialPlaceKey& unit, std::string name) {
    const auto known = units_.find(unitOf(unit.place, unit.unit));
    if (known != units_.end() && unit.name < known->second.size()) {
        known->second[unit.name] = std::move(name);
    }
}

const std::string& PlaceNames::municipality(PlaceCode place) const {
    static const std::string none;
    const auto found = places_.find(place);
    return found != places_.end() ? found->second : none;
}

bool PlaceNames::hasUnit(PlaceCode place, std::uint32_t unit) const {
    return units_.contains(unitOf(place, unit));
}

void PlaceNames::addCode(PlaceCode place, std::uint32_t unit, std::uint32_t postalCode) {
    const OfficialPlaceKey code{.place = place, .unit = unit, .postalCode = postalCode};
    OfficialPlaceKey& recent = recentCodes_.at((unit + postalCode * 31) % recentCodes_.size());
    if (code != recent) { // there are a hundred stretches for each
        codes_[place].emplace(unit, postalCode);
        recent = code;
    }
}

void PlaceNames::addRowsOf(PlaceCode place, std::string_view shortName, std::vector<PlaceRow>& rows) const {
    std::set<std::uint32_t> codes;
    std::vector<std::pair<std::string_view, OfficialPlaceKey>> entities; // with their names
    const std::string& name = places_.at(place);
    for (const auto& [unit, code] : codes_.at(place)) {
        codes.insert(code);
        if (const auto known = units_.find(unitOf(place, unit)); known != units_.end()) {
            for (std::uint8_t i = 0; i < known->second.size(); ++i) {
                if (known->second[i] != name) {
                    entities.push_back({known->second[i], {place, true, unit, i, code}});
                }
            }
        }
    }
    const bool hasOneCode = codes.size() == 1;
    for (const std::uint32_t code : codes) {
        rows.push_back({{.place = place, .postalCode = code}, hasOneCode, name, std::string(shortName)});
    }
    const auto nameAndCode = [](const auto& entity) {
        return std::pair(entity.first, entity.second.postalCode);
    };
    std::ranges::stable_sort(entities, {}, nameAndCode);
    const auto isSame = [&](const auto& one, const auto& other) {
        return nameAndCode(one) == nameAndCode(other); // of several units
    };
    entities.erase(std::unique(entities.begin(), entities.end(), isSame), entities.end());
    for (const auto& [entity, official] : entities) {
        rows.push_back({official, hasOneCode, std::string(entity), std::string(shortName)});
    }
}

std::vector<PlaceRow> PlaceNames::rows() const {
    NamesInWidth shortNames(shortNameWidth);
    for (const auto& [place, name] : places_) {
        shortNames.add(place, name);
    }
    const std::span<const std::string_view> settled = shortNames.settle();
    std::vector<PlaceRow> rows;
    rows.reserve(units_.size() + 2 * places_.size());
    auto shortName = settled.begin();
    for (const auto& [place, name] : places_) {
        if (codes_.contains(place)) {
            addRowsOf(place, *shortName, rows);
        }
        ++shortName;
    }
    return rows;
}

} // namespace ambrel::directory
