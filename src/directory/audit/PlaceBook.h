// What MUNICIPI says about municipalities and postal codes, kept for an audit. Texts in Windows-1252.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "dbase/dbf/schema.h"

namespace ambrel::directory {

struct MunicipalityRow {
    dbase::RecordNumber record = 0;
    std::string ineCode = {}, postalCode = {}, singleMark = {}, capital = {}, name = {},
                municipality = {}; // the last one is NOM_MUNICI
    bool isEntity = false;
};

struct StreetRow {
    dbase::RecordNumber record = 0;
    std::string key = {}, province = {}, capital = {}, type = {}, name = {}, postalCode = {},
                municipality = {}, ineCode = {};
    int oddFirst = 0, oddLast = 0, evenFirst = 0, evenLast = 0;
};

/// The number of a text of five digits; null for anything else.
[[nodiscard]] std::optional<std::uint32_t> fiveDigits(std::string_view text);
/// Whether a text has the form of a Spanish postal code, 01001 to 52999.
[[nodiscard]] bool isPostalCode(std::string_view text);

/// A municipality, by its place in the book.
using PlaceNumber = std::uint32_t;

/// Filled row by row; asked after finish().
class PlaceBook {
public:
    struct Place {
        std::string ineCode, name;      // the name of its first row that is not an entity's
        dbase::RecordNumber record = 0; // of that row
        bool isNamed = false;
        std::uint64_t provinces = 0; // of its postal codes: bit 28 for Madrid's
        std::uint32_t codes = 0;     // different postal codes
        std::string marks = {};      // of capitals: those of its rows with a postal code; ' ' for blank
    };
    /// A row of MUNICIPI with a postal code.
    struct Use {
        std::uint32_t postalCode;
        PlaceNumber place;
        char capital;
        bool isEntity;
        friend auto operator<=>(const Use&, const Use&) = default;
    };

    PlaceBook();

    void add(const MunicipalityRow& row);
    void finish();

    [[nodiscard]] const std::vector<Place>& places() const { return places_; }
    [[nodiscard]] std::optional<PlaceNumber> placeOfIne(std::string_view ineCode) const;
    /// The rows of a postal code, those of a municipality beside each other.
    [[nodiscard]] std::span<const Use> usesOf(std::string_view postalCode) const;
    [[nodiscard]] bool hasCode(PlaceNumber place, std::string_view postalCode) const;
    /// Whether an entity of the municipality has the code.
    [[nodiscard]] bool isOfEntity(PlaceNumber place, std::string_view postalCode) const;
    /// Whether some code of the municipality begins with a province of two digits.
    [[nodiscard]] bool hasProvince(PlaceNumber place, std::string_view province) const;

    /// The municipality that a street's row names by its code, or else the only one that its postal code and
    /// its MUNICIPI leave.
    [[nodiscard]] std::optional<PlaceNumber> placeOf(const StreetRow& row) const;
    /// Whether some row of the municipality has a capital mark, or a blank one.
    [[nodiscard]] bool hasMark(PlaceNumber place, std::string_view mark) const;
    /// The capital mark that rows of MUNICIPI with the street's code agree on; null if they do not.
    [[nodiscard]] std::optional<char> capitalOf(const StreetRow& row) const;

private:
    std::vector<Place> places_;
    std::vector<std::int32_t> placeByIne_; // -1: none
    std::vector<Use> uses_;                // sorted after finish()
    std::vector<std::uint32_t> firstUse_;  // by postal code, and one more
};

} // namespace ambrel::directory
