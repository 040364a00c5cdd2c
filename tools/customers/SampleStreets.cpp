// Reading the sample's streets.
#include "tools/customers/SampleStreets.h"

#include <map>
#include <tuple>

#include "tools/callejero/SampleRows.h"

namespace customers {
namespace {

struct Town {
    std::string name, province;
};

std::map<std::string, Town> townsByCode() {
    std::map<std::string, std::string> provinces;
    for (const callejero::CsvRow& row : callejero::sampleRows("PROVIN")) {
        provinces[row.at("CODIGO")] = row.at("PROVINCIA");
    }
    std::map<std::string, Town> towns;
    for (const callejero::CsvRow& row : callejero::sampleRows("MUNICIPI")) {
        if (row.at("ENT_MENOR") == "False") {
            towns[row.at("COD_INE")] = {row.at("NOMBRE"), provinces["0" + row.at("COD_PROV")]};
        }
    }
    return towns;
}

} // namespace

std::vector<Street> sampleStreets() {
    const std::map<std::string, Town> towns = townsByCode();
    std::vector<Street> streets;
    for (const callejero::CsvRow& row : callejero::sampleRows("POSTAL")) {
        const auto town = towns.find(row.at("COD_INE"));
        if (town == towns.end() || row.at("TIPO_VIA") == "LG") {
            continue; // a locality rather than a street
        }
        const auto isSame = [&](const Street& street) {
            return std::tie(street.type, street.name, street.ineCode) ==
                   std::tie(row.at("TIPO_VIA"), row.at("VIA"), row.at("COD_INE"));
        };
        if (streets.empty() || !isSame(streets.back())) { // rows of a street follow one another
            streets.push_back({row.at("TIPO_VIA"),
                               row.at("VIA"),
                               town->first,
                               town->second.name,
                               town->second.province,
                               {}});
        }
        streets.back().stretches.push_back({std::stoi(row.at("IMPAR_INI")), std::stoi(row.at("IMPAR_FIN")),
                                            std::stoi(row.at("PAR_INI")), std::stoi(row.at("PAR_FIN")),
                                            row.at("CODPOSTAL")});
    }
    return streets;
}

} // namespace customers
