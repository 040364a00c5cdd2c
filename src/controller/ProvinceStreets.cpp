// Provinces by name, and streets by province and name.
#include "controller/ProvinceStreets.h"

#include "data/OpenForBlock.h"
#include "services/Rnumcad.h"
#include "services/Ruttb.h"

namespace ambrel {
namespace {

constexpr int spanishGroup = 1;

} // namespace

std::vector<Province> spanishProvinces(dbase::Dataset& provinces) {
    std::vector<Province> found;
    const OpenForBlock open(provinces);
    for (bool isRow = !provinces.isEmpty(); isRow; isRow = provinces.next())
        if (provinces.field("GRUPO").integer() == spanishGroup)
            found.push_back({provinces.field("PROVINCIA").text(), provinces.field("CODIGO").text()});
    return found;
}

std::string provinceCode(dbase::Dataset& provinces, const std::string& name) {
    TBIndexa("ALFABETICO", provinces);
    const OpenForBlock open(provinces);
    // A search compares what the column holds; a longer name is not found by its beginning.
    if (!TBBusca(provinces, {{"PROVINCIA", name}}, exactSearch) ||
        provinces.field("PROVINCIA").text() != name)
        return "00";
    return StrRight(provinces.field("CODIGO").text(), 2);
}

void goToProvince(TDMCodPostales& tables, dbase::Dataset& provinces, const std::string& name) {
    TBIndexa("CODPOSTAL", tables.tbMunicipi);
    const std::string firstCode = provinceCode(provinces, name) + "000";
    static_cast<void>(TBBusca(tables.tbMunicipi, {{"CODPOSTAL", firstCode}}, nearestSearch));
}

void goToStreetOfProvince(TDMCodPostales& tables, const std::string& name) {
    constexpr int width = static_cast<int>(streetNameWidth);
    static_cast<void>(TBBusca(tables.tbPostal,
                              {{"PROVINCIA", StrLeft(tables.tbMunicipiCODPOSTAL.text(), 2)},
                               {"VIA", StrLeft(Espacios(name, width), width)}},
                              nearestSearch));
}

} // namespace ambrel
