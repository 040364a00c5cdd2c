// Gives out keys in order, province by province.
#include "directory/StreetKeys.h"

#include <algorithm>

#include "loading/failure.h"

namespace ambrel::directory {
namespace {

constexpr std::uint32_t keysOfProvince = 1000000;

} // namespace

void StreetKeys::addUsed(std::uint32_t key) {
    const std::uint32_t province = key / keysOfProvince;
    if (province >= highest_.size()) {
        return; // such as a user's own: never given out
    }
    if (used_.empty()) {
        used_.resize(highest_.size() * keysOfProvince);
    }
    used_[key] = true;
    highest_.at(province) = std::max(highest_.at(province), key % keysOfProvince);
}

std::uint32_t StreetKeys::next(PlaceCode place) {
    const std::uint32_t province = place / 1000, first = province * keysOfProvince;
    std::uint32_t& highest = highest_.at(province);
    std::uint32_t number = highest + 1;
    if (number >= keysOfProvince && !used_.empty()) {
        for (number = 1; number < keysOfProvince && used_[first + number]; ++number) {
        }
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
