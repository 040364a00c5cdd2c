// The five postal tables as created: columns and tags.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "AmbrelExport.h"
#include "dbase/table/table_definition.h"

namespace ambrel {

/// Width of a municipality's name, wherever it is stored or bound.
inline constexpr std::size_t municipalityNameWidth = 53;
/// Width of a street's name.
inline constexpr std::size_t streetNameWidth = 45;
/// Width of a street's type.
inline constexpr std::size_t streetTypeWidth = 3;
/// Width of the calculated `NOMBRE_COMPLETO` of a municipality.
inline constexpr std::size_t wholeNameWidth = 100;

/// `CAPITAL` of a provincial capital, and of anything else; in a street: of one named after a locality.
inline constexpr const char* capitalMark = "0";
inline constexpr const char* localityMark = "9";
/// `UNICO` of a municipality with a single postal code.
inline constexpr const char* singleCodeMark = "S";

[[nodiscard]] AMBREL_EXPORT dbase::TableDefinition municipalityTable();            // MUNICIPI
[[nodiscard]] AMBREL_EXPORT dbase::TableDefinition streetTable();                  // POSTAL
[[nodiscard]] AMBREL_EXPORT dbase::TableDefinition provinceTable();                // PROVIN
[[nodiscard]] AMBREL_EXPORT dbase::TableDefinition streetTypeTable();              // TIPO_VIA
[[nodiscard]] AMBREL_EXPORT dbase::TableDefinition alternativeMunicipalityTable(); // MUNICIMJ

/// All five, in order of creation.
[[nodiscard]] AMBREL_EXPORT std::vector<dbase::TableDefinition> tableDefinitions();

/// The definition of a table by its name, with or without ".DBF", letter case ignored; null for any other
/// table.
[[nodiscard]] AMBREL_EXPORT std::optional<dbase::TableDefinition> tableDefinition(std::string_view table);

} // namespace ambrel
