// The layouts of the five postal tables.
#include "data/TableDefinitions.h"

#include <string>
#include <utility>

#include "dbase/system/names.h"

namespace ambrel {
namespace {

using dbase::Column;
using dbase::ColumnType;

Column character(std::string name, std::size_t width) {
    return {
        .name = std::move(name), .type = ColumnType::Character, .width = static_cast<std::uint16_t>(width)};
}

/// A 16-bit integer: sign and five digits.
Column shortInteger(std::string name) {
    return {.name = std::move(name), .type = ColumnType::Numeric, .width = 6};
}

Column logical(std::string name) {
    return {.name = std::move(name), .type = ColumnType::Logical, .width = 1};
}

/// A tag whose key is the column of the same name.
dbase::TagDefinition columnTag(const std::string& column) { return {.name = column, .expression = column}; }

} // namespace

dbase::TableDefinition municipalityTable() {
    return {.name = "MUNICIPI",
            .columns = {character("COD_INE", 5), character("CODPOSTAL", 5), character("UNICO", 1),
                        character("CAPITAL", 1), character("NOMBRE", municipalityNameWidth),
                        character("COD_PROV", 2), character("COD_MUN", 4), character("COD_MUNMJ", 3),
                        logical("ENT_MENOR"), character("NOM_MUNICI", 30)},
            .tags = {columnTag("COD_INE"), columnTag("CODPOSTAL"), columnTag("NOMBRE")}};
}

dbase::TableDefinition streetTable() {
    return {.name = "POSTAL",
            .columns = {character("CODIGO1", 8), character("PROVINCIA", 2), character("CAPITAL", 1),
                        character("TIPO_VIA", streetTypeWidth), character("VIA", streetNameWidth),
                        shortInteger("IMPAR_INI"), shortInteger("IMPAR_FIN"), shortInteger("PAR_INI"),
                        shortInteger("PAR_FIN"), character("CODPOSTAL", 5),
                        character("MUNICIPI", municipalityNameWidth), character("COD_INE", 5)},
            .tags = {{.name = "VIA", .expression = "PROVINCIA+CAPITAL+VIA+TIPO_VIA"},
                     {.name = "NOMBREVIA", .expression = "PROVINCIA+VIA"},
                     columnTag("CODIGO1")}};
}

dbase::TableDefinition provinceTable() {
    return {.name = "PROVIN",
            .columns = {character("PROVINCIA", 21), character("CODIGO", 3), character("COD_198", 3),
                        shortInteger("GRUPO")},
            .tags = {columnTag("CODIGO"), {.name = "ALFABETICO", .expression = "PROVINCIA"}}};
}

dbase::TableDefinition streetTypeTable() {
    return {.name = "TIPO_VIA",
            .columns = {character("CODIGO", 2), character("NOMBRE", 15), character("NOMBRE_CAT", 15),
                        character("CODPOSTAL", 3)},
            .tags = {columnTag("CODIGO"), columnTag("NOMBRE")}};
}

dbase::TableDefinition alternativeMunicipalityTable() {
    return {.name = "MUNICIMJ",
            .columns = {character("PROVCOD", 10), character("POBLCOD", 10), character("POBLLITE", 41)},
            .tags = {columnTag("POBLLITE")}};
}

std::vector<dbase::TableDefinition> tableDefinitions() {
    return {municipalityTable(), streetTable(), provinceTable(), streetTypeTable(),
            alternativeMunicipalityTable()};
}

std::optional<dbase::TableDefinition> tableDefinition(std::string_view table) {
    std::string name = dbase::upperName(table);
    if (name.ends_with(".DBF")) {
        name.resize(name.size() - 4);
    }
    for (dbase::TableDefinition& definition : tableDefinitions()) {
        if (definition.name == name) {
            return std::move(definition);
        }
    }
    return std::nullopt;
}

} // namespace ambrel
