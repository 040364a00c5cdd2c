// What the statistics office calls the rows of an edition.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "directory/Records.h"

namespace ambrel::directory {

/// A street or pseudo street of the whole country as one number, ordered by municipality.
using StreetId = std::uint64_t;
[[nodiscard]] constexpr StreetId streetId(PlaceCode place, bool isPseudo, std::uint32_t key) {
    return (StreetId{place} << 18) | (isPseudo ? StreetId{1} << 17 : 0) | key;
}
[[nodiscard]] constexpr PlaceCode placeOf(StreetId id) { return static_cast<PlaceCode>(id >> 18); }
[[nodiscard]] constexpr bool isPseudo(StreetId id) { return (id >> 17 & 1) != 0; }
[[nodiscard]] constexpr std::uint32_t keyOf(StreetId id) { return static_cast<std::uint32_t>(id & 0x1FFFF); }

/// A row of POSTAL: its street, its postal code, and its place among the street's rows of that code.
struct OfficialKey {
    StreetId street = 0;
    std::uint32_t postalCode = 0;
    std::uint16_t ordinal = 0;

    /// In 20 characters: municipality, V or P, street, postal code, place in four digits.
    [[nodiscard]] std::string text() const;
    /// Null for any other text.
    [[nodiscard]] static std::optional<OfficialKey> fromText(std::string_view text);
    friend auto operator<=>(const OfficialKey&, const OfficialKey&) = default;
};

/// A row of MUNICIPI: a municipality, or one of the names of one of its units, with a postal code.
struct OfficialPlaceKey {
    static constexpr std::size_t mostNames = 10; // of a unit: `name` is one digit

    PlaceCode place = 0;
    bool isEntity = false;
    std::uint32_t unit = 0; // 0 for a municipality
    std::uint8_t name = 0;  // from 0, among the unit's different names: its entity and its nucleus
    std::uint32_t postalCode = 0;

    /// In 19 characters: municipality, M or E (entity), unit in seven digits, postal code, name.
    [[nodiscard]] std::string text() const;
    [[nodiscard]] static std::optional<OfficialPlaceKey> fromText(std::string_view text);
    friend auto operator<=>(const OfficialPlaceKey&, const OfficialPlaceKey&) = default;
};

} // namespace ambrel::directory
