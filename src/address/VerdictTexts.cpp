// The texts of each verdict.
#include "address/VerdictTexts.h"

#include <array>

namespace ambrel {

namespace {

struct Texts {
    std::string_view title, meaning, advice;
};

constexpr std::array<Texts, verdictCount> texts = {{
    {"Fila rota",
     "La fila no se puede leer: comillas sin cerrar, valores de más o de menos, o letras en otra "
     "codificación.",
     "Corríjala en el fichero y vuelva a validarlo."},
    {"Vacía", "La fila no trae ninguna dirección.", "Complétela, o quítela del fichero."},
    {"Municipio desconocido",
     "Ningún municipio de las tablas se llama así, y el código postal no lleva a ninguno.",
     "Revise el nombre; la provincia o el código postal ayudan a encontrarlo."},
    {"Ambigua", "Hay varias direcciones igual de buenas, con códigos postales distintos.",
     "Elija entre las alternativas: suele faltar la provincia o el tipo de vía."},
    {"Vía desconocida", "El municipio está en las tablas, pero ninguna de sus vías se llama así.",
     "Revise el nombre. Si la vía existe, dela de alta o actualice el callejero."},
    {"Dudosa", "Hay algo que se le parece, pero no tanto como para cambiarlo sin preguntar.",
     "Compare con las alternativas y decida."},
    {"Número fuera de tramo", "La vía está en las tablas, pero ninguno de sus tramos llega a ese número.",
     "Compruebe el número. Si es correcto, amplíe el tramo en la ficha de la vía."},
    {"Falta el número", "La vía tiene varios códigos postales, y sin número no se sabe cuál es el suyo.",
     "Añada el número."},
    {"Código postal distinto", "La dirección está en las tablas, con otro código postal que el que traía.",
     "Compruebe cuál de los dos se equivoca: el código o la dirección."},
    {"Corregida", "Se ha cambiado con seguridad algo que estaba mal escrito.", ""},
    {"Completada",
     "Se ha añadido lo que le faltaba: el código postal, el municipio, la provincia o el tipo de vía.", ""},
    {"Correcta", "Está en las tablas tal como venía.", ""},
}};

const Texts& of(Verdict verdict) { return texts.at(static_cast<std::size_t>(verdict)); }

} // namespace

std::string_view verdictTitle(Verdict verdict) { return of(verdict).title; }
std::string_view verdictMeaning(Verdict verdict) { return of(verdict).meaning; }
std::string_view verdictAdvice(Verdict verdict) { return of(verdict).advice; }

} // namespace ambrel
