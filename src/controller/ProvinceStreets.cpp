// Provinces by name, and streets by province and name.
#include "controller/ProvinceStreets.h"

#include "controller/StreetSearchKey.h"
#include "data/TableScope.h"
#include "services/Rnumcad.h"
#include "services/Ruttb.h"

namespace ambrel {

std::vector<Province> spanishProvinces(dbase::Dataset& provinces) {
    std::vector<Province> found;
    const TableScope open(provinces);
    provinces.first(); // it may have been open already
    for (bool isRow = !provinces.isEmpty(); isRow; isRow = provinces.next()) {
        if (provinces.field("GRUPO").integer() == provinceGroup) {
            found.push_back({provinces.field("PROVINCIA").text(), provinces.field("CODIGO").text()});
        }
    }
    return found;
}

std::string provinceCode(dbase::Dataset& provinces, const std::string& name) {
    TBIndexa("ALFABETICO", provinces);
    const TableScope open(provinces);
    // A search compares only as much as the column holds; a longer name must not match its beginning.
    if (!TBBusca(provinces, {{"PROVINCIA", name}}, exactSearch) ||
        provinces.field("PROVINCIA").text() != name) {
        return "00";
    }
    return StrRight(provinces.field("CODIGO").text(), provinceDigits);
}

void goToFirstMunicipality(TDMCodPostales& tables, dbase::Dataset& provinces, const std::string& name) {
    TBIndexa("CODPOSTAL", tables.tbMunicipi);
    const std::string firstCode = provinceCode(provinces, name) + "000";
    static_cast<void>(TBBusca(tables.tbMunicipi, {{"CODPOSTAL", firstCode}}, nearestSearch));
}

void goToStreetOfProvince(TDMCodPostales& tables, const std::string& name) {
    static_cast<void>(
        TBBusca(tables.tbPostal,
                {{"PROVINCIA", provinceOf(tables.tbMunicipiCODPOSTAL.view())}, {"VIA", paddedName(name)}},
                nearestSearch));
}

} // namespace ambrel
