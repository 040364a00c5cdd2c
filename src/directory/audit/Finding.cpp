// The classes of findings: their names, and what they say to people.
#include "directory/audit/Finding.h"

#include <algorithm>
#include <array>

#include "dbase/system/names.h"

namespace ambrel::directory {

namespace {

struct Kind {
    std::string_view name, title, meaning, advice;
    Severity severity;
    bool isRepairable;
};

constexpr std::array<Kind, findingClassCount> kinds = {{
    {"RANGO_INVERTIDO", "Tramo al revés",
     "El primer número es mayor que el último: ningún número cae dentro.", "Intercambie los dos números.",
     Severity::Grave, true},
    {"PARIDAD", "Par entre impares", "Un número par está en las columnas de los impares, o al revés.",
     "Compruebe el tramo.", Severity::Warning, false},
    {"SIN_NUMEROS", "Fila sin números",
     "Los cuatro números son cero: por esta fila ningún número lleva a su código postal.",
     "Si la vía tiene números con ese código, complete el tramo.", Severity::Warning, false},
    {"SOLAPE", "Tramos que se solapan",
     "Dos filas de una vía de un municipio dan códigos postales distintos a los mismos números.",
     "Recorte el tramo que sobra. Si son dos vías de localidades distintas, no hay nada que corregir.",
     Severity::Grave, false},
    {"HUECO", "Hueco entre códigos",
     "Entre dos tramos con códigos distintos hay números que no son de ninguno.",
     "Si en el hueco hay casas, amplíe uno de los tramos.", Severity::Note, false},
    {"FILA_REPETIDA", "Fila repetida", "Otra fila dice lo mismo, con otra clave.",
     "Borre la que ninguna otra aplicación use.", Severity::Warning, false},
    {"CLAVE_REPETIDA", "Clave repetida",
     "Otra fila tiene la misma clave (CODIGO1), y quien busca por ella encuentra cualquiera de las dos.",
     "Dé otra clave a la que ninguna otra aplicación use.", Severity::Grave, false},
    {"CLAVE_NO_VALIDA", "Clave que no vale",
     "CODIGO1 no es un número de ocho cifras: sin clave la vía nunca se da por conocida.",
     "Dé a la fila una clave libre.", Severity::Grave, false},
    {"CODIGO_INEXISTENTE", "Código postal que no existe",
     "No tiene la forma de un código postal, o ningún municipio lo tiene.", "Corrija el código.",
     Severity::Grave, false},
    {"CODIGO_AJENO", "Código postal de otro lugar",
     "Es de otra provincia, o ninguna fila de su municipio lo tiene.",
     "Corrija el código o el municipio; si es cierto, añada el código al municipio.", Severity::Warning,
     false},
    {"PROVINCIA_AJENA", "Provincia que no es la suya",
     "PROVINCIA no es la de ningún código de su municipio, y por ella se busca la vía.",
     "Corrija la provincia.", Severity::Grave, true},
    {"VIA_SIN_MUNICIPIO", "Vía sin municipio",
     "No dice de qué municipio es, y por su código postal tampoco se sabe.", "Complete el municipio.",
     Severity::Grave, false},
    {"INE_DESCONOCIDO", "Código INE desconocido", "Ningún municipio de MUNICIPI tiene ese código.",
     "Corrija el código, o dé de alta el municipio.", Severity::Warning, false},
    {"TIPO_DESCONOCIDO", "Tipo de vía desconocido", "TIPO_VIA no tiene ese tipo.",
     "Corrija el tipo, o añádalo a TIPO_VIA.", Severity::Warning, false},
    {"SIN_NOMBRE", "Sin nombre", "La fila no tiene nombre, y nadie puede encontrarla.",
     "Complétela o bórrela.", Severity::Grave, false},
    {"MINUSCULAS", "Nombre en minúsculas",
     "Las búsquedas escriben los nombres en mayúsculas, y así no se encuentra.", "Páselo a mayúsculas.",
     Severity::Grave, true},
    {"BLANCOS", "Blancos de más", "Empieza por un blanco o lleva varios seguidos, y así no se encuentra.",
     "Quite los que sobran.", Severity::Warning, true},
    {"LETRA_ROTA", "Letras rotas", "Una letra se estropeó al pasar de un sistema a otro.",
     "Escriba el nombre como es.", Severity::Warning, true},
    {"PARENTESIS", "Paréntesis sin cerrar",
     "Se abre y no se cierra, o al revés: suele ser un nombre cortado.", "Complete el nombre.",
     Severity::Warning, false},
    {"CAPITAL_EN_BLANCO", "Sin marca de capital",
     "CAPITAL está en blanco, y las búsquedas por la clave de la vía no llegan a la fila.",
     "Ponga la marca de su municipio.", Severity::Warning, true},
    {"CAPITAL_AJENA", "Marca de capital de otro lugar",
     "Ninguna fila de su municipio lleva esa marca, y las búsquedas por la clave de la vía no llegan a ella.",
     "Ponga la marca de su municipio.", Severity::Warning, true},
    {"FICHA_CANCELADA", "Ficha cancelada",
     "Se dio de alta la vía y se canceló su ficha: le faltan CAPITAL y municipio.",
     "Complete la ficha, o bórrela.", Severity::Warning, true},
    {"MUNICIPIO_SIN_VIAS", "Municipio sin vías", "POSTAL no tiene ninguna vía del municipio.",
     "Cargue el callejero, o impórtelas.", Severity::Note, false},
    {"VIAS_OCULTAS", "Vías ocultas por otras",
     "La clave de la vía no lleva municipio: la del mismo nombre de otro municipio va delante, y quien busca "
     "sólo por la clave encuentra ésa.",
     "Nada que corregir: el formulario, «direccion» y «validar» miran el municipio.", Severity::Note, false},
    {"UNICO", "Marca de código único equivocada",
     "UNICO no corresponde a los códigos postales que el municipio tiene.", "Corrija la marca.",
     Severity::Warning, true},
    {"BLOQUE_99", "Bloque «99» casi lleno",
     "Las claves de las vías que dan de alta los usuarios se acaban en 99999999.",
     "Renumere antes de que se repitan.", Severity::Warning, false},
}};

const Kind& of(FindingClass kind) { return kinds.at(static_cast<std::size_t>(kind)); }

} // namespace

std::string_view severityName(Severity severity) {
    return severity == Severity::Grave ? "GRAVE" : severity == Severity::Warning ? "AVISO" : "NOTA";
}

std::string_view className(FindingClass kind) { return of(kind).name; }
std::string_view classTitle(FindingClass kind) { return of(kind).title; }
std::string_view classMeaning(FindingClass kind) { return of(kind).meaning; }
std::string_view classAdvice(FindingClass kind) { return of(kind).advice; }
Severity usualSeverity(FindingClass kind) { return of(kind).severity; }
bool isRepairable(FindingClass kind) { return of(kind).isRepairable; }

std::optional<FindingClass> findingClassNamed(std::string_view name) {
    const auto* const found = std::ranges::find(kinds, dbase::upperName(name), &Kind::name);
    return found == kinds.end() ? std::nullopt
                                : std::optional(static_cast<FindingClass>(found - kinds.begin()));
}

std::string_view tableName(AuditedTable table) {
    return table == AuditedTable::Municipalities ? "MUNICIPI" : "POSTAL";
}

} // namespace ambrel::directory
