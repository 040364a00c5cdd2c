// The names of all streets of an edition, in little room.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "directory/OfficialKey.h"

namespace ambrel::directory {

class StreetIndex {
public:
    struct Entry {
        StreetId id;
        std::uint32_t type;   // number of its abbreviation
        std::uint32_t offset; // of its name
        std::uint8_t length;
    };

    /// Takes memory at once for about so many.
    void reserve(std::size_t streets);
    void add(StreetId id, std::string_view type, std::string_view name);
    /// Puts the entries in order, after which they are found. Of several with one id the first counts.
    void finish();

    /// Null for a street that was not added. Fastest for one street after another of a municipality,
    /// and in their order.
    [[nodiscard]] const Entry* find(StreetId id);
    /// Whether a street was added. Fastest for the streets of one municipality, in any order.
    [[nodiscard]] bool contains(StreetId id);
    [[nodiscard]] std::string_view name(const Entry& entry) const {
        return std::string_view(names_).substr(entry.offset, entry.length);
    }
    [[nodiscard]] const std::string& type(const Entry& entry) const { return types_[entry.type]; }
    [[nodiscard]] std::size_t size() const { return entries_.size(); }

private:
    [[nodiscard]] std::span<const Entry> entriesOf(PlaceCode place) const;
    void mark(bool isThere);

    std::vector<Entry> entries_;
    std::span<const Entry> near_;           // those of the municipality asked for last
    std::span<const Entry>::iterator next_; // among them, the one found last or the one after it
    std::span<const Entry> marked_;         // the same, for contains()
    std::vector<bool> marks_;               // of those, by the end of their ids
    std::string names_;
    std::vector<std::string> types_;
    std::unordered_map<std::string, std::uint32_t> typeNumbers_;
};

} // namespace ambrel::directory
