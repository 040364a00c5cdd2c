// The columns that a validation adds to those of a file.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

#include "address/JudgedAddress.h"

namespace ambrel {

inline constexpr std::size_t validatedColumnCount = 12;
inline constexpr std::array<std::string_view, validatedColumnCount> validatedColumnNames{
    "VEREDICTO", "CONFIANZA", "COD_INE_V", "MUNICIPIO_V", "PROVINCIA_V", "TIPO_V",
    "VIA_V",     "NUMERO_V",  "RESTO_V",   "CODPOSTAL_V", "CAMBIOS",     "ALTERNATIVAS"};

/// Their values for an address, in Windows-1252. `provinceName`: of its province; empty if not known.
///  - CONFIANZA: two decimals, rounded down.
///  - CAMBIOS: what was changed, "vía: «ALCLA» > «ALCALA» | código postal: «» > «28009»"; of a broken row,
///  why
///    it is.
///  - ALTERNATIVAS: what else may have been meant, "0.87 CL «ALCALA» 28079 «MADRID» 28009/28014 | 0.85 …".
/// A » inside a text is doubled.
[[nodiscard]] std::array<std::string, validatedColumnCount> validatedColumns(const JudgedAddress& judged,
                                                                             const std::string& provinceName);

} // namespace ambrel
