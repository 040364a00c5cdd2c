// The names of all streets of an edition, in little room.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

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

class StreetIndex {
public:
    struct Entry {
        StreetId id;
        std::uint32_t type;   // number of its abbreviation
        std::uint32_t offset; // of its name
        std::uint8_t length;
    };

    void add(StreetId id, std::string_view type, std::string_view name);
    /// Puts the entries in order, after which they are found. Of several with one id the first counts.
    void finish();

    /// Null for a street that was not added.
    [[nodiscard]] const Entry* find(StreetId id) const;
    [[nodiscard]] std::string_view name(const Entry& entry) const {
        return std::string_view(names_).substr(entry.offset, entry.length);
    }
    [[nodiscard]] const std::string& type(const Entry& entry) const { return types_[entry.type]; }
    [[nodiscard]] std::size_t size() const { return entries_.size(); }

private:
    std::vector<Entry> entries_;
    std::string names_;
    std::vector<std::string> types_;
    std::unordered_map<std::string, std::uint32_t> typeNumbers_;
};

} // namespace ambrel::directory
