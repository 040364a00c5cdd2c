// Official keys as text.
#include "directory/OfficialKey.h"

#include <cstdio>

#include "directory/FixedLine.h"

namespace ambrel::directory {

std::string OfficialKey::text() const {
    char text[32];
    std::snprintf(text, sizeof text, "%05u%c%05u%05u%04u", placeOf(street), isPseudo(street) ? 'P' : 'V',
                  keyOf(street), postalCode, ordinal);
    return text;
}

std::optional<OfficialKey> OfficialKey::fromText(std::string_view text) {
    const FixedLine line(text);
    const auto place = line.number(1, 5), number = line.number(7, 11), postalCode = line.number(12, 16),
               ordinal = line.number(17, 20);
    const char kind = line.sign(6);
    if (text.size() != 20 || !place || !number || !postalCode || !ordinal || (kind != 'V' && kind != 'P')) {
        return std::nullopt;
    }
    return OfficialKey{streetId(*place, kind == 'P', *number), *postalCode,
                       static_cast<std::uint16_t>(*ordinal)};
}

std::string OfficialPlaceKey::text() const {
    char text[32];
    std::snprintf(text, sizeof text, "%05u%c%07u%05u%u", place, isEntity ? 'E' : 'M', unit, postalCode, name);
    return text;
}

std::optional<OfficialPlaceKey> OfficialPlaceKey::fromText(std::string_view text) {
    const FixedLine line(text);
    const auto place = line.number(1, 5), unit = line.number(7, 13), postalCode = line.number(14, 18),
               name = line.number(19, 19);
    const char kind = line.sign(6);
    if (text.size() != 19 || (kind != 'M' && kind != 'E') || !place || !unit || !postalCode || !name) {
        return std::nullopt;
    }
    return OfficialPlaceKey{*place, kind == 'E', *unit, static_cast<std::uint8_t>(*name), *postalCode};
}

} // namespace ambrel::directory
