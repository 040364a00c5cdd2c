// Puts into words what was noticed.
#include "directory/EditionWarnings.h"

#include "dbase/system/counted.h"
#include "loading/ansi_text.h"

namespace ambrel::directory {

std::vector<std::string> warningsOf(const EditionNotes& notes, const LoadSummary& summary) {
    std::vector<std::string> warnings = notes.otherDates;
    if (summary.isOlder) {
        warnings.push_back("la edición es anterior a la que ya está cargada, de " + summary.previousEdition);
    }
    if (!summary.unlikelyLosses.empty()) {
        warnings.push_back("¿están enteros los ficheros?\n" +
                           summary.unlikelyLosses.substr(0, summary.unlikelyLosses.size() - 1));
    }
    const auto warn = [&](std::uint64_t count, const char* one, const char* many) {
        if (count > 0) {
            warnings.push_back(dbase::counted(count, one, many));
        }
    };
    warn(notes.ofPseudoStreets, "tramo de una seudovía no se carga, porque no se da --seudovias",
         "tramos de seudovías no se cargan, porque no se da --seudovias");
    warn(notes.withoutMunicipality, "tramo no se carga, porque ningún fichero nombra su municipio",
         "tramos no se cargan, porque ningún fichero nombra su municipio");
    warn(notes.streetsWithoutName, "vía no está en el fichero de vías; lleva el nombre corto de sus tramos",
         "vías no están en el fichero de vías; llevan el nombre corto de sus tramos");
    warn(summary.shortenedNames, "fila lleva un nombre abreviado, que no cabía",
         "filas llevan un nombre abreviado, que no cabía");
    std::string unknown;
    for (const auto& [type, count] : summary.unknownTypes) {
        unknown +=
            (unknown.empty() ? "" : ", ") + loading::utf8FromAnsi(type) + " (" + std::to_string(count) + ')';
    }
    if (!unknown.empty()) {
        warnings.push_back("tipos de vía que no se conocen y quedan en blanco: " + unknown);
    }
    return warnings;
}

} // namespace ambrel::directory
