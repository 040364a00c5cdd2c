// Keys of POSTAL for the rows of the official directory.
#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>
#include <unordered_set>

#include "directory/Records.h"

namespace ambrel::directory {

/// What the office calls a row: its street, its postal code, and its place among the street's rows of that
/// code.
struct OfficialKey {
    PlaceCode place = 0;
    bool isPseudo = false;
    std::uint32_t street = 0;
    std::uint32_t postalCode = 0;
    std::uint16_t ordinal = 0;

    /// In 20 characters: municipality, V or P, street, postal code, place in four digits.
    [[nodiscard]] std::string text() const;
    friend bool operator==(const OfficialKey&, const OfficialKey&) = default;
};

/// Gives out `CODIGO1`: the municipality's province and six digits, never one in use, and never of the block
/// "99" that users' own streets have.
class StreetKeys {
public:
    /// A key that a row has already, whatever it is; it is not given out again.
    void addUsed(std::uint32_t key) { used_.insert(key); }
    /// The key that an edition before gave to a row, and that the row keeps.
    void addEarlier(const OfficialKey& official, std::uint32_t key);
    /// The key of a row. Errors: loading::Failure when a province has no free one.
    [[nodiscard]] std::uint32_t keyOf(const OfficialKey& official);

private:
    std::unordered_set<std::uint32_t> used_;
    std::unordered_map<std::string, std::uint32_t> earlier_; // by the official key's text
    std::unordered_map<std::uint32_t, std::uint32_t> next_;  // by province
};

} // namespace ambrel::directory
