// Generates rows of a street directory from their numbers.
#include "postal_rows.h"

#include <array>
#include <cstdio>

namespace bench {

namespace {

// One round of a well-mixing integer hash: rows are the same in every run and on every machine.
std::uint32_t mix(std::uint32_t x) {
    x ^= x >> 16;
    x *= 0x7feb352dU;
    x ^= x >> 15;
    x *= 0x846ca68bU;
    x ^= x >> 16;
    return x;
}

constexpr std::array<const char*, 8> types{"CL", "AV", "PZ", "PS", "CM", "CR", "TR", "RD"};
constexpr std::array<const char*, 20> firstWords{
    "MAYOR",     "SAN JUAN", "SANTA MARIA", "REAL",      "DOCTOR",    "CONSTITUCION", "IGLESIA",
    "FUENTE",    "MOLINO",   "CASTILLO",    "ESTACION",  "CERVANTES", "GOYA",         "VELAZQUEZ",
    "CAMINO DE", "PUENTE",   "ERAS",        "ARROYO DE", "VIRGEN DE", "HERMANOS"};
constexpr std::array<const char*, 20> lastWords{
    "GARCIA",    "LOPEZ",    "FERNANDEZ", "LA PAZ",    "LA CRUZ",  "LOS OLIVOS", "LAS FLORES",
    "EL PRADO",  "ARRIBA",   "ABAJO",     "NUEVA",     "VIEJA",    "DEL SOL",    "DEL RIO",
    "LA SIERRA", "EL PILAR", "LA VEGA",   "EL CARMEN", "LAS ERAS", "LA ENCINA"};

} // namespace

PostalRow postalRow(std::uint32_t number) {
    const std::uint32_t h = mix(number + 1);
    const std::uint32_t g = mix(h ^ 0x9e3779b9U);
    PostalRow row;
    char text[64];
    const unsigned province = 1 + h % 52;
    std::snprintf(text, sizeof text, "%08u", 10'000'000U + number);
    row.codigo1 = text;
    std::snprintf(text, sizeof text, "%02u", province);
    row.provincia = text;
    row.capital = (h >> 8) % 3 == 0 ? "0" : "9";
    row.tipoVia = types[(h >> 12) % types.size()];
    std::snprintf(text, sizeof text, "%s %s %u", firstWords[g % firstWords.size()],
                  lastWords[(g >> 8) % lastWords.size()], (g >> 16) % 200);
    row.via = text;
    row.imparIni = 1;
    row.imparFin = 9999;
    row.parIni = 2;
    row.parFin = 9998;
    std::snprintf(text, sizeof text, "%02u%03u", province, (g >> 4) % 1000);
    row.codPostal = text;
    std::snprintf(text, sizeof text, "MUNICIPIO NUMERO %u", (h >> 5) % 400);
    row.municipi = text;
    std::snprintf(text, sizeof text, "%02u%03u", province, (h >> 5) % 400);
    row.codIne = text;
    return row;
}

PostalSearch postalSearch(std::uint32_t i) {
    const std::uint32_t h = mix(i * 2654435761U + 7);
    const PostalRow row = postalRow(h % rowCount);
    PostalSearch search{row.provincia, row.capital, row.via, row.tipoVia};
    if (h % 2 == 0) { // typed halfway
        search.via.resize(search.via.size() / 2);
        search.tipoVia.clear();
    }
    return search;
}

} // namespace bench
