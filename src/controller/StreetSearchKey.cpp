// Builds the keys of the street searches.
#include "controller/StreetSearchKey.h"

#include "data/Province.h"
#include "data/TableDefinitions.h"
#include "dbase/dbf/codec.h"
#include "services/Rnumcad.h"

namespace ambrel {

dbase::Key streetSearchKey(const StreetPlace& place, const std::string& name, const std::string& type) {
    return {{"PROVINCIA", provinceOf(place.postalCode)},
            {"CAPITAL", place.capital},
            {"VIA", name},
            {"TIPO_VIA", type}};
}

dbase::Key paddedStreetSearchKey(const StreetPlace& place, const std::string& name, const std::string& type) {
    return streetSearchKey(place, paddedName(name), type);
}

std::string paddedName(const std::string& name) { return Espacios(name, static_cast<int>(streetNameWidth)); }

std::string_view nameInKey(std::string_view name) {
    return dbase::decodeText(name.substr(0, streetNameWidth));
}

} // namespace ambrel
