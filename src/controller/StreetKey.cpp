// Building the keys of the street searches.
#include "controller/StreetKey.h"

#include "data/TableDefinitions.h"
#include "services/Rnumcad.h"

namespace ambrel {
namespace {

constexpr int provinceDigits = 2;

} // namespace

dbase::Key streetKey(const StreetPlace& place, const std::string& name, const std::string& type) {
    return {{"PROVINCIA", StrLeft(place.postalCode, provinceDigits)},
            {"CAPITAL", place.capital},
            {"VIA", name},
            {"TIPO_VIA", type}};
}

dbase::Key paddedStreetKey(const StreetPlace& place, const std::string& name, const std::string& type) {
    constexpr int width = static_cast<int>(streetNameWidth);
    return streetKey(place, StrLeft(Espacios(name, width), width), type);
}

std::string_view nameInKey(std::string_view name) {
    name = name.substr(0, streetNameWidth);
    return name.substr(0, name.find_last_not_of(' ') + 1);
}

} // namespace ambrel
