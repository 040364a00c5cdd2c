// Provinces by name, and streets by province and name.
#include "controller/ProvinceStreets.h"

#include "controller/StreetSearchKey.h"
#include "data/TableScope.h"
#include "dbase/dataset/go_to.h"
#include "dbase/dataset/row_walk.h"
#include "services/Rnumcad.h"
#include "services/Ruttb.h"

namespace ambrel {

std::vector<Province> spanishProvinces(dbase::Dataset& provinces) {
    std::vector<Province> found;
    const TableScope open(provinces);
    dbase::forEachRow(provinces, [&] {
        if (provinces.field("GRUPO").integer() == provinceGroup) {
            found.push_back({provinces.field("PROVINCIA").text(), provinces.field("CODIGO").text()});
        }
    });
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
    dbase::goToNearest(tables.tbMunicipi, {{"CODPOSTAL", firstCode}});
}

void goToStreetOfProvince(TDMCodPostales& tables, const std::string& name) {
    const std::string province = provinceOf(tables.tbMunicipiCODPOSTAL.view());
    dbase::goToNearest(tables.tbPostal, {{"PROVINCIA", province}, {"VIA", paddedName(name)}});
}

} // namespace ambrel
