// The order that judges addresses: its options and their help.
#include <charconv>

#include "dbase/system/quoted.h"
#include "tools/command_definition.h"

namespace ambcp {

namespace {

std::string isConfidence(const std::string& text) {
    double value = -1;
    const auto [end, problem] = std::from_chars(text.data(), text.data() + text.size(), value);
    const bool isOne = problem == std::errc() && end == text.data() + text.size() && value >= 0 && value <= 1;
    return isOne ? std::string() : dbase::inQuotes(text) + " no está entre 0 y 1; por ejemplo, 0.95";
}

/// The options for a table; `forFiles` are those that have no sense for one.
void defineForTable(CLI::App& command, ValidateOptions& options, const std::vector<CLI::Option*>& forFiles) {
    CLI::Option* table = offerText(command, "--tabla", options.table, "TABLA",
                                   "En lugar de un fichero, una tabla dBase de DIR, o de otra carpeta");
    for (CLI::Option* option : forFiles) {
        table->excludes(option);
    }
    CLI::Option* fill =
        offerText(
            command, "--escribir", options.fill, "PARTE[=COLUMNA],...",
            "Escribe en la tabla lo resuelto: municipio, provincia, tipo, via, numero, resto, codpostal, "
            "cod_ine o veredicto; sin COLUMNA, en la que se lee")
            ->needs(table);
    offerText(command, "--clave", options.key, "COLUMNA,...",
              "Las que distinguen una fila de las demás, para deshacer; si no se da, la de un tag único")
        ->needs(fill);
    offerText(command, "--deshacer-en", options.undoFile, "F",
              "Dónde guardar lo que había; si no se da, TABLA.deshacer, junto a la tabla")
        ->needs(fill);
}

} // namespace

void defineValidate(CLI::App& app, Command& chosen) {
    const auto options = std::make_shared<ValidateOptions>();
    CLI::App& command = addCommand(app, chosen, "validar", "Valida un fichero de direcciones, fila por fila",
                                   options, validar);
    requireText(command, "DIR", options->folder, folderHelp);
    CLI::Option* file =
        offerText(command, "ENTRADA.csv", options->file, "",
                  "CSV; la primera fila da los nombres de las columnas. «-» es la entrada estándar");
    offerText(command, "--salida", options->output, "F.csv", "El resultado; si no se da, la salida estándar");
    offerText(command, "--columnas", options->columns, "CLAVE=COLUMNA,...",
              "Qué es cada columna: linea, tipo, via, numero, resto, codpostal, municipio o provincia; las "
              "que no se dan se reconocen por su nombre");
    command
        .add_option("--umbral", options->threshold,
                    "Confianza desde la que se corrige sin preguntar; si no se da, 0.90")
        ->type_name("X")
        ->check(isConfidence);
    offerText(command, "--solo-fallos", options->unsettled, "F.csv",
              "Escribe además, aparte, las filas que no se resuelven solas");
    offerText(command, "--informe", options->report, "F.html",
              "Escribe además un informe, para el navegador");
    command.add_option("--hilos", options->threads, "Hilos; si no se da, uno por núcleo")
        ->type_name("N")
        ->check(isCount);
    CLI::Option* separator = offerText(command, "--separador", options->separator, "S",
                                       "Entre las columnas: un signo, o «tab»; si no se da, se reconoce")
                                 ->check(isKnownSeparator);
    CLI::Option* encoding = offerText(command, "--codificacion", options->encoding, "C",
                                      "utf-8, windows-1252 o utf-16 (con su marca); si no se da, se reconoce")
                                ->check(isKnownEncoding);
    command.add_flag("--sin-cabecera", options->hidesHeading,
                     "No escribe los nombres de las columnas, para juntar trozos");
    CLI::Option* part = offerText(command, "--parte", options->part, "I/N",
                                  "Sólo la parte I de N; juntas son el fichero entero");
    defineForTable(command, *options, {file, separator, encoding, part});
    command.footer(
        "Escribe cada fila como estaba, y detrás su veredicto, la confianza, la dirección corregida, qué ha "
        "cambiado y\n"
        "hasta tres alternativas. Termina con 0 cuando se ha leído todo, sean cuales sean los "
        "veredictos; los totales\n"
        "salen por la salida de errores. Los veredictos: CORRECTA, COMPLETADA y CORREGIDA (resueltas "
        "solas),\n"
        "CODIGO_DISTINTO, SIN_NUMERO, NUMERO_FUERA, DUDOSA, VIA_DESCONOCIDA, AMBIGUA, "
        "MUNICIPIO_DESCONOCIDO,\n"
        "VACIA y FILA_ROTA.");
}

} // namespace ambcp
