// Gives out keys in order, province by province.
#include "directory/StreetKeys.h"

#include <cstdio>

#include "loading/failure.h"

namespace ambrel::directory {

std::string OfficialKey::text() const {
    char text[32];
    std::snprintf(text, sizeof text, "%05u%c%05u%05u%04u", place, isPseudo ? 'P' : 'V', street, postalCode,
                  ordinal);
    return text;
}

void StreetKeys::addEarlier(const OfficialKey& official, std::uint32_t key) {
    earlier_[official.text()] = key;
    addUsed(key);
}

std::uint32_t StreetKeys::keyOf(const OfficialKey& official) {
    constexpr std::uint32_t keysOfProvince = 1000000;
    if (!earlier_.empty()) {
        if (const auto known = earlier_.find(official.text()); known != earlier_.end()) {
            return known->second;
        }
    }
    const std::uint32_t province = official.place / 1000;
    std::uint32_t& next = next_.try_emplace(province, 1).first->second;
    while (next < keysOfProvince && used_.contains(province * keysOfProvince + next)) {
        ++next;
    }
    if (next == keysOfProvince) {
        throw loading::Failure("en la provincia " + std::to_string(province) +
                               " no quedan claves para más vías");
    }
    return province * keysOfProvince + next++;
}

} // namespace ambrel::directory
