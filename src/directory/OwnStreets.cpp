// Keeps users' rows by municipality and name.
#include "directory/OwnStreets.h"

#include <algorithm>
#include <functional>
#include <tuple>
#include <utility>

#include "directory/StreetNames.h"

namespace ambrel::directory {
namespace {

std::uint32_t numbersBetween(std::uint32_t first, std::uint32_t last) {
    return first == 0 || last < first ? 0 : (last - first) / 2 + 1;
}

std::uint64_t hashOf(std::string_view name) { return std::hash<std::string>()(plainCapitals(name)); }

bool precedes(const OwnStreets::Row& one, const OwnStreets::Row& other) {
    return std::tie(one.place, one.name, one.record) < std::tie(other.place, other.name, other.record);
}

} // namespace

std::uint32_t numbersIn(const Bounds& bounds) {
    return numbersBetween(bounds[0], bounds[1]) + numbersBetween(bounds[2], bounds[3]);
}

std::uint32_t numbersShared(const Bounds& one, const Bounds& other) {
    Bounds shared{};
    for (const std::size_t side : {0U, 2U}) {
        if (one[side] != 0 && other[side] != 0) {
            shared[side] = std::max(one[side], other[side]);
            shared[side + 1] = std::min(one[side + 1], other[side + 1]);
        }
    }
    return numbersIn(shared);
}

std::uint32_t numbersCovered(const Bounds& bounds, std::span<const Bounds> others) {
    std::uint32_t covered = 0;
    for (const std::size_t side : {0U, 2U}) {
        std::vector<std::pair<std::uint32_t, std::uint32_t>> ranges;
        for (const Bounds& other : others) {
            if (other[side] != 0) {
                ranges.emplace_back(other[side], std::min(other[side + 1], bounds[side + 1]));
            }
        }
        std::ranges::sort(ranges);
        std::uint32_t next = bounds[side];
        for (const auto& [first, last] : ranges) {
            const std::uint32_t begin = std::max(first, next);
            if (next != 0 && begin <= last) {
                covered += numbersBetween(begin, last);
                next = last + 2;
            }
        }
    }
    return covered;
}

Bounds boundsOfSides(const Bounds& bounds) {
    Bounds result{};
    for (const std::size_t side : {0U, 2U}) {
        const std::uint32_t least = side == 0 ? 1 : 2, parity = least % 2;
        const std::uint32_t first = std::max<std::uint32_t>(bounds[side], least), last = bounds[side + 1];
        if (first <= last) {
            result[side] = static_cast<std::uint16_t>(first + (first % 2 != parity ? 1 : 0));
            result[side + 1] = static_cast<std::uint16_t>(last - (last % 2 != parity ? 1 : 0));
        }
    }
    return result;
}

void OwnStreets::add(PlaceCode place, std::string_view name, dbase::RecordNumber record) {
    rows_.push_back({place, record, hashOf(name)});
}

void OwnStreets::finish() { std::ranges::sort(rows_, precedes); }

std::span<const OwnStreets::Row> OwnStreets::find(PlaceCode place, std::string_view name) const {
    if (rows_.empty()) {
        return {};
    }
    const std::uint64_t hash = hashOf(name);
    const auto begin = std::ranges::lower_bound(rows_, Row{place, 0, hash}, precedes);
    auto end = begin;
    while (end != rows_.end() && end->place == place && end->name == hash) {
        ++end;
    }
    return {begin, end};
}

} // namespace ambrel::directory
