// Municipalities and their population units by name.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "directory/OfficialKey.h"

namespace ambrel::directory {

/// A row of MUNICIPI. Texts in Windows-1252.
struct PlaceRow {
    OfficialPlaceKey official;
    bool hasOneCode = false;          // the municipality
    std::string name, shortPlaceName; // the second is the municipality's, in 30 characters
};

/// Whether a municipality is the capital of its province, or Ceuta or Melilla.
[[nodiscard]] bool isCapital(PlaceCode place);

/// Names as the tables have them: in capitals without accents, an article after a comma instead of in
/// brackets.
class PlaceNames {
public:
    void addMunicipality(PlaceCode place, std::string_view name);
    /// The singular entity and the nucleus of a unit; "*DISEMINADO*", which names scattered houses, counts as
    /// none. False if the unit has more different names than an official key tells apart; it keeps the first
    /// ones.
    bool addUnit(PlaceCode place, std::uint32_t unit, std::string_view entity, std::string_view nucleus);

    /// Empty for a municipality that was not added.
    [[nodiscard]] const std::string& municipality(PlaceCode place) const;
    [[nodiscard]] bool hasMunicipalities() const { return !places_.empty(); }
    [[nodiscard]] bool hasUnit(PlaceCode place, std::uint32_t unit) const;

    /// The name that the table has for a municipality whatever the office calls it.
    void setMunicipality(PlaceCode place, std::string name) { places_[place] = std::move(name); }
    /// The name that the table has for a unit, in full; `name`: as in OfficialPlaceKey.
    void setUnitName(const OfficialPlaceKey& unit, std::string name);

    /// A stretch of a unit has a code.
    void addCode(PlaceCode place, std::uint32_t unit, std::uint32_t postalCode);
    /// The rows of all municipalities that have codes and a name, each before its entities.
    [[nodiscard]] std::vector<PlaceRow> rows() const;

private:
    using Unit = std::uint64_t; // municipality and unit
    [[nodiscard]] static Unit unitOf(PlaceCode place, std::uint32_t unit) { return Unit{place} << 24 | unit; }
    void addRowsOf(PlaceCode place, std::string_view shortName, std::vector<PlaceRow>& rows) const;

    std::map<PlaceCode, std::string> places_;
    std::unordered_map<Unit, std::vector<std::string>> units_;
    std::map<PlaceCode, std::set<std::pair<std::uint32_t, std::uint32_t>>> codes_; // unit and postal code
    std::array<OfficialPlaceKey, 256> recentCodes_;                                // some of those added
};

} // namespace ambrel::directory
