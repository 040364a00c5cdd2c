// Reads the host's places from PROVIN and MUNICIPI.
#include "import/HostPlaces.h"

#include <QCollator>
#include <QLocale>
#include <algorithm>

#include "data/Province.h"
#include "dbase/dataset/row_walk.h"
#include "services/Rnumcad.h"
#include "services/Ruttb.h"
#include "services/Text.h"

namespace ambrel {
namespace {

HostPlace placeOf(const dbase::Field& name, const dbase::Field& code) {
    return {.name = fromWindows1252(name.text()), .number = Cad_Int(code.text())};
}

void sortByName(std::vector<HostPlace>& places) {
    const QCollator spanish(QLocale(QLocale::Spanish, QLocale::Spain));
    std::vector<std::pair<QCollatorSortKey, std::size_t>> keys;
    for (std::size_t i = 0; i < places.size(); ++i) {
        keys.emplace_back(spanish.sortKey(places[i].name), i);
    }
    std::ranges::stable_sort(keys, [](const auto& a, const auto& b) { return a.first < b.first; });
    std::vector<HostPlace> sorted;
    for (const auto& [key, index] : keys) {
        sorted.push_back(std::move(places[index]));
    }
    places = std::move(sorted);
}

} // namespace

std::vector<HostPlace> hostProvinces(const std::string& database) {
    std::vector<HostPlace> places;
    const auto table = CreaTabla(database, "PROVIN.DBF", "ALFABETICO", false, openNow);
    TBFiltra(*table, "GRUPO=" + Int_Cad(provinceGroup));
    dbase::Field& name = table->field("PROVINCIA");
    dbase::Field& code = table->field("CODIGO");
    dbase::forEachRow(*table, [&] { places.push_back(placeOf(name, code)); });
    return places;
}

std::vector<HostPlace> hostMunicipalities(const std::string& database, const std::string& provinceCode) {
    std::vector<HostPlace> places;
    const auto table = CreaTabla(database, "MUNICIPI.DBF", "COD_INE", false, openNow);
    if (table->isEmpty()) {
        return places;
    }
    dbase::Field& province = table->field("COD_PROV");
    dbase::Field& name = table->field("NOMBRE");
    dbase::Field& code = table->field("CODPOSTAL");
    const auto isInProvince = [&] { return province.view() == provinceCode; };
    table->first();
    if (dbase::walkTo(*table, isInProvince)) {
        dbase::forEachRowWhile(*table, isInProvince, [&] { places.push_back(placeOf(name, code)); });
    }
    sortByName(places);
    return places;
}

std::string codeOf(int number, int width) {
    return StrRight(std::string(static_cast<std::size_t>(width), '0') + Int_Cad(number), width);
}

} // namespace ambrel
