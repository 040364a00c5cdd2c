// The names of verdicts and parts.
#include "address/JudgedAddress.h"

#include <array>

namespace ambrel {

std::string_view verdictName(Verdict verdict) {
    static constexpr std::array<std::string_view, verdictCount> names{
        "FILA_ROTA",    "VACIA",      "MUNICIPIO_DESCONOCIDO", "AMBIGUA",   "VIA_DESCONOCIDA", "DUDOSA",
        "NUMERO_FUERA", "SIN_NUMERO", "CODIGO_DISTINTO",       "CORREGIDA", "COMPLETADA",      "CORRECTA"};
    return names.at(static_cast<std::size_t>(verdict));
}

std::string_view partName(JudgedPart part) {
    static constexpr std::array<std::string_view, 7> names{
        "municipio", "provincia", "tipo", "v\355a", "n\xFAmero", "resto", "c\363digo postal"};
    return names.at(static_cast<std::size_t>(part));
}

} // namespace ambrel
