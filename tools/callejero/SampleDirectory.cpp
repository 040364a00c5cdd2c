// The directory of the built-in sample.
#include <algorithm>
#include <array>
#include <charconv>
#include <map>
#include <set>
#include <string_view>

#include "tools/callejero/CadastreNames.h"
#include "tools/callejero/Directory.h"
#include "tools/callejero/SampleRows.h"

namespace callejero {
namespace {

/// Width of street names in the cadastre.
constexpr std::size_t streetWidth = 25;
constexpr std::array<std::string_view, 4> provincesWithCadastre{"01", "20", "31", "48"};

int number(std::string_view text) {
    int value = 0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

/// Names that any place may have, some of them in the cadastre's odd forms.
constexpr std::array<std::pair<std::string_view, std::string_view>, 96> commonStreets{{
    {"CL", "ABEDUL"},
    {"CL", "ACACIAS LAS"},
    {"CL", "AGUA"},
    {"AV", "ALAMEDA VIEJA"},
    {"CL", "ALBERCA LA"},
    {"CL", "ALMENDROS LOS"},
    {"CL", "ALONDRA"},
    {"CM", "ALTO DEL"},
    {"CL", "AMAPOLA"},
    {"CL", "AMOR, DEL"},
    {"CL", "ANTONIO MACHADO"},
    {"PZ", "ARCO EL"},
    {"CL", "ARROYO"},
    {"CL", "AURORA"},
    {"CL", "AVELLANO"},
    {"CL", "AZUCENA"},
    {"CL", "BARRANCO"},
    {"CL", "BODEGAS LAS"},
    {"CL", "BREZO"},
    {"CM", "CABALLEROS"},
    {"CL", "CALVARIO"},
    {"CL", "CAMPANA"},
    {"CM", "CANTERA LA"},
    {"CL", "CARDENAL"},
    {"CL", "CARRETAS"},
    {"CL", "CASTILLO"},
    {"CL", "CEREZO"},
    {"CL", "CERRILLO"},
    {"CL", "CIERZO"},
    {"CL", "CLAVEL"},
    {"AV", "CONSTITUCION"},
    {"PZ", "CORRO EL"},
    {"CL", "CRUCES LAS"},
    {"CT", "CUESTA ALTA"},
    {"CM", "DEHESA (LA)"},
    {"DS", "DISEMINADO"},
    {"CL", "DOCTOR FLEMING"},
    {"CL", "ENCINA"},
    {"CM", "ERAS LAS"},
    {"CL", "ERMITA"},
    {"CL", "ESCUELAS"},
    {"PZ", "ESPAÑA"},
    {"CL", "ESPLIEGO"},
    {"CL", "FEDERICO GARCIA LORCA"},
    {"PZ", "FERIA LA"},
    {"CL", "FRAGUA"},
    {"CL", "FRESNO"},
    {"PZ", "FUENTE NUEVA"},
    {"CL", "GARDENIA"},
    {"CL", "GERANIO"},
    {"CL", "GOLONDRINA"},
    {"CL", "GOYA"},
    {"CL", "HERRERIA"},
    {"CL", "HIGUERA"},
    {"CL", "HORNO"},
    {"CL", "HUERTOS LOS"},
    {"CL", "IGLESIA"},
    {"CL", "JARDINES"},
    {"CL", "JILGUERO"},
    {"CL", "JUAN RAMON JIMENEZ"},
    {"CL", "LAUREL"},
    {"CL", "LAVADERO"},
    {"CL", "LIBERTAD"},
    {"CL", "LIRIO"},
    {"CL", "LUNA"},
    {"CL", "MADRESELVA"},
    {"PZ", "MAYOR"},
    {"CL", "MEDIODIA"},
    {"CL", "MIGUEL DE CERVANTES"},
    {"CL", "MIRADOR"},
    {"CM", "MOLINO (EL"},
    {"CL", "MORERA"},
    {"CL", "NARCISO"},
    {"CL", "NOGAL"},
    {"CL", "NORTE"},
    {"CL", "NUMERO   1"},
    {"CL", "NUMERO   2"},
    {"CL", "OLIVO"},
    {"CL", "PALOMAR"},
    {"CL", "PAZ"},
    {"CL", "PEÑA LA"},
    {"TR", "PILAR, DEL"},
    {"AV", "PINOS LOS"},
    {"CL", "PONIENTE"},
    {"CL", "POZO"},
    {"CL", "REAL"},
    {"CL", "ROMERO"},
    {"CL", "SAN ISIDRO"},
    {"CL", "SANTA BARBARA"},
    {"CL", "SOL"},
    {"CL", "TAHONA"},
    {"CL", "TOMILLO"},
    {"CR", "VEGA LA"},
    {"CL", "VELAZQUEZ"},
    {"CL", "VENTISQUERO"},
    {"PS", "VIRGEN DEL CAMINO"},
}};

/// Adds about a third of the common names, a different selection for each municipality.
void addCommonStreets(std::vector<Street>& streets, unsigned municipality) {
    const auto isThere = [&streets](const Street& street) {
        return std::ranges::any_of(streets,
                                   [&street](const Street& other) { return other.name == street.name; });
    };
    unsigned state = municipality * 2654435761u;
    for (const auto& [type, name] : commonStreets) {
        state = state * 1664525u + 1013904223u;
        const Street street{std::string(type), std::string(name)};
        if ((state >> 16) % 3 == 0 && !isThere(street)) {
            streets.push_back(street);
        }
    }
}

/// Adds a road to the next place and a way to the previous one: names that no other municipality has.
void addRoads(std::vector<Municipality>& places) {
    for (std::size_t i = 0; i < places.size() && places.size() > 1; ++i) {
        const Municipality& next = places[(i + 1) % places.size()];
        const Municipality& before = places[(i + places.size() - 1) % places.size()];
        places[i].streets.push_back({"CR", cutAt(next.name, streetWidth)});
        if (&next != &before) {
            places[i].streets.push_back({"CM", cutAt("VIEJO DE " + before.name, streetWidth)});
        }
    }
}

/// The streets of POSTAL, each name once, by the municipality's code.
std::map<std::string, std::vector<Street>> streetsOfSample() {
    std::map<std::string, std::vector<Street>> streets;
    std::set<std::string> known;
    for (const CsvRow& row : sampleRows("POSTAL")) {
        const Street street{row.at("TIPO_VIA"), cutAt(row.at("VIA"), streetWidth)};
        if (known.insert(row.at("COD_INE") + street.type + street.name).second) {
            streets[row.at("COD_INE")].push_back(street);
        }
    }
    return streets;
}

/// The municipalities by their province's code.
std::map<std::string, std::vector<Municipality>> municipalitiesOfSample() {
    std::map<std::string, std::vector<Street>> streets = streetsOfSample();
    std::map<std::string, std::vector<Municipality>> provinces;
    std::set<std::string> known;
    for (const CsvRow& row : sampleRows("MUNICIPI")) {
        const std::string& code = row.at("COD_INE");
        if (row.at("ENT_MENOR") == "True" || !known.insert(code).second) {
            continue;
        }
        Municipality place{municipalityName(row.at("NOMBRE")), number(row.at("COD_MUN")), streets[code]};
        addCommonStreets(place.streets, static_cast<unsigned>(number(code)));
        provinces[row.at("COD_PROV")].push_back(std::move(place));
    }
    for (auto& [province, places] : provinces) {
        std::ranges::sort(places, {}, &Municipality::name);
        addRoads(places);
    }
    return provinces;
}

} // namespace

std::vector<Province> sampleProvinces() {
    std::map<std::string, std::vector<Municipality>> municipalities = municipalitiesOfSample();
    std::vector<Province> provinces;
    for (const CsvRow& row : sampleRows("PROVIN")) {
        const std::string& code = row.at("COD_198");
        if (row.at("GRUPO") == "1" &&
            std::ranges::find(provincesWithCadastre, code) == provincesWithCadastre.end()) {
            provinces.push_back({provinceName(row.at("PROVINCIA")), number(code), municipalities[code]});
        }
    }
    std::ranges::sort(provinces, {}, &Province::name);
    return provinces;
}

} // namespace callejero
