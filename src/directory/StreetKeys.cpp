// Gives out keys in order, province by province.
#include "directory/StreetKeys.h"

#include <algorithm>

#include "loading/failure.h"

namespace ambrel::directory {
namespace {

constexpr std::uint32_t keysOfProvince = 1000000;

} // namespace

/// Returns false for a key that is never given out, such as a user's own.
bool StreetKeys::raise(std::uint32_t key) {
    const std::uint32_t province = key / keysOfProvince;
    if (province >= highest_.size()) {
        return false;
    }
    if (used_.empty()) {
        used_.resize(highest_.size() * keysOfProvince);
    }
    highest_.at(province) = std::max(highest_.at(province), key % keysOfProvince);
    return true;
}

void StreetKeys::addUsed(std::uint32_t key) {
    if (raise(key)) {
        used_[key] = true;
    }
}

void StreetKeys::addGone(std::uint32_t key) { raise(key); }

std::uint32_t StreetKeys::next(PlaceCode place) {
    const std::uint32_t province = place / 1000, first = province * keysOfProvince;
    std::uint32_t& highest = highest_.at(province);
    std::uint32_t number = highest + 1;
    if (number >= keysOfProvince && !used_.empty()) {
        std::uint32_t& tried = tried_.at(province);
        for (number = tried + 1; number < keysOfProvince && used_[first + number]; ++number) {
        }
        tried = number;
    }
    if (number >= keysOfProvince) {
        throw loading::Failure("en la provincia " + std::to_string(province) +
                               " no quedan claves para más vías");
    }
    if (!used_.empty()) {
        used_[first + number] = true;
    }
    highest = std::max(highest, number);
    return first + number;
}

} // namespace ambrel::directory
