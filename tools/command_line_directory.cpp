// The orders of the official street directory: their options and their help.
#include "dbase/system/quoted.h"
#include "tools/command_definition.h"

namespace ambcp {

namespace {

std::string isProvince(const std::string& text) {
    const bool isCode = text.size() == 2 && isCount(text).empty() && text >= "01" && text <= "52";
    return isCode ? std::string() : dbase::inQuotes(text) + " no es el código de una provincia, de 01 a 52";
}

std::string isOpening(const std::string& text) {
    return text == "no" || text == "extremos" || text == "huecos"
               ? std::string()
               : dbase::inQuotes(text) + " no se conoce; no, extremos o huecos";
}

void defineOverview(CLI::App& app, Command& chosen) {
    const auto options = std::make_shared<OverviewOptions>();
    CLI::App& command = addCommand(app, chosen, "ver", "Dice qué hay en ficheros del callejero oficial",
                                   options, callejeroVer);
    command.add_option("FICHEROS", options->files, "Como se publican: sueltos o dentro de un ZIP")
        ->required()
        ->type_name("");
    command.footer(
        "De cada fichero dice qué es, la fecha de su edición, sus provincias, cuántas líneas tiene y "
        "cuáles no se\n"
        "entienden. Termina con 1 si alguno no es del callejero o más de una línea de cada cien no se "
        "entiende.");
}

void defineDirectoryLoad(CLI::App& app, Command& chosen) {
    const auto options = std::make_shared<DirectoryLoadOptions>();
    CLI::App& command =
        addCommand(app, chosen, "cargar", "Carga una edición del callejero oficial en MUNICIPI y POSTAL",
                   options, callejeroCargar);
    requireText(command, "DIR", options->folder, "Carpeta de las tablas; se crean si no hay");
    offerText(command, "--tramos", options->stretches, "F", "Fichero de tramos (TRAM), suelto o en un ZIP")
        ->required();
    offerText(command, "--vias", options->streets, "F", "Fichero de vías (VIAS)")->required();
    offerText(command, "--seudovias", options->pseudoStreets, "F",
              "Fichero de seudovías (PSEU); sin él, sus tramos no se cargan");
    offerText(command, "--unidades", options->units, "F", "Fichero de unidades de población (UP)");
    offerText(command, "--municipios", options->municipalities, "F.csv",
              "CSV con las columnas COD_INE (o CPRO y CMUN) y NOMBRE");
    command.add_option("--provincia", options->provinces, "Sólo esta provincia, de 01 a 52; puede repetirse")
        ->type_name("PP")
        ->check(isProvince)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
        ->expected(1);
    offerText(command, "--abrir-rangos", options->opening, "C",
              "no, extremos o huecos; si no se da, extremos")
        ->check(isOpening);
    CLI::Option* const trial =
        command.add_flag("--simular", options->isTrial,
                         "No cambia nada; escribe lo que vendría, se iría y cambiaría, por municipios");
    command.add_flag("--aunque-falten", options->takesLosses,
                     "Carga también una edición a la que le falta mucho de lo que había");
    offerText(command, "--informe", options->report, "F.html",
              "Escribe además un informe, para el navegador");
    offerText(command, "--conflictos", options->conflicts, "F.csv",
              "Escribe además las filas de usted que no dicen lo que la oficina, y quedan");
    offerText(command, "--deshacer-en", options->undoFile, "F",
              "Dónde guardar lo que había; si no se da, DIR/callejero.deshacer")
        ->excludes(trial)
        ->excludes(command.add_flag("--sin-deshacer", options->keepsNoUndo,
                                    "No guarda lo que había; la carga no se podrá deshacer"));
    command.footer(
        "Si MUNICIPI está vacía se llena; para eso hace falta --unidades o --municipios.\n"
        "Con «extremos», una vía de un solo código tiene todos los números, y los tramos primero y último "
        "de las demás\n"
        "llegan hasta el 1 y el 9999; con «huecos» se reparten además los números entre dos códigos.");
}

} // namespace

void defineDirectory(CLI::App& app, Command& chosen) {
    CLI::App* command =
        app.add_subcommand("callejero", "El callejero oficial del Instituto Nacional de Estadística");
    command->group(orderGroup);
    addHelpOption(*command);
    command->require_subcommand(1);
    defineOverview(*command, chosen);
    defineDirectoryLoad(*command, chosen);
}

} // namespace ambcp
