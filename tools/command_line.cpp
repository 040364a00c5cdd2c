// The command line: its options and their help.
#include "tools/command_line.h"

#include <charconv>
#include <cstdio>
#include <memory>

#include <CLI/CLI.hpp>

#include "dbase/system/quoted.h"
#include "loading/csv.h"
#include "loading/failure.h"
#include "loading/text_encoding.h"
#include "tools/spanish_help.h"
#include "tools/usage_errors.h"

namespace ambcp {

namespace {

constexpr const char* orderGroup = "Órdenes";
constexpr const char* folderHelp = "Carpeta de las tablas";
constexpr const char* tableHelp = "Tabla, con o sin .DBF";

/// A minus sign would be read as a very large number.
std::string isCount(const std::string& text) {
    const bool isDigits = !text.empty() && text.find_first_not_of("0123456789") == std::string::npos;
    return isDigits ? std::string() : dbase::inQuotes(text) + " no es un número";
}

std::string isConfidence(const std::string& text) {
    double value = -1;
    const auto [end, problem] = std::from_chars(text.data(), text.data() + text.size(), value);
    const bool isOne = problem == std::errc() && end == text.data() + text.size() && value >= 0 && value <= 1;
    return isOne ? std::string() : dbase::inQuotes(text) + " no está entre 0 y 1; por ejemplo, 0.95";
}

std::string isKnownSeparator(const std::string& text) {
    return loading::separatorNamed(text) ? std::string()
                                         : dbase::inQuotes(text) + " no separa columnas; un signo, o «tab»";
}

std::string isKnownEncoding(const std::string& text) {
    return loading::textEncodingNamed(text)
               ? std::string()
               : dbase::inQuotes(text) + " no se conoce; utf-8, windows-1252 o utf-16";
}

std::string isProvince(const std::string& text) {
    const bool isCode = text.size() == 2 && isCount(text).empty() && text >= "01" && text <= "52";
    return isCode ? std::string() : dbase::inQuotes(text) + " no es el código de una provincia, de 01 a 52";
}

std::string isOpening(const std::string& text) {
    return text == "no" || text == "extremos" || text == "huecos"
               ? std::string()
               : dbase::inQuotes(text) + " no se conoce; no, extremos o huecos";
}

/// Adds a subcommand whose options, kept alive with it, are passed to a function.
template<typename Options>
CLI::App& addCommand(CLI::App& app, Command& chosen, const char* name, const char* description,
                     const std::shared_ptr<Options>& options, ExitCode (*run)(const Options&)) {
    CLI::App* command = app.add_subcommand(name, description);
    command->group(orderGroup);
    addHelpOption(*command);
    command->callback([&chosen, options, run] { chosen = [options, run] { return run(*options); }; });
    return *command;
}

void requireText(CLI::App& command, const char* name, std::string& value, const char* help) {
    command.add_option(name, value, help)->required()->type_name("");
}

CLI::Option* offerText(CLI::App& command, const char* name, std::string& value, const char* type,
                       const char* help) {
    return command.add_option(name, value, help)->type_name(type);
}

void defineCreate(CLI::App& app, Command& chosen) {
    const auto options = std::make_shared<CreateOptions>();
    CLI::App& command = addCommand(app, chosen, "crear", "Crea las cinco tablas", options, crear);
    requireText(command, "DIR", options->folder, "Carpeta; se crea si no existe");
    command.add_flag("--muestra", options->withSample, "Con los datos de muestra");
    command.add_flag("--forzar", options->replaces, "Sustituye las tablas que ya existan");
}

void defineLoad(CLI::App& app, Command& chosen) {
    const auto options = std::make_shared<LoadOptions>();
    CLI::App& command =
        addCommand(app, chosen, "cargar", "Carga filas de un fichero CSV en una tabla", options, cargar);
    requireText(command, "DIR", options->folder, folderHelp);
    requireText(command, "TABLA", options->table, tableHelp);
    requireText(command, "FICHERO.csv", options->file,
                "CSV; la primera fila da los nombres de las columnas. «-» es la entrada estándar");
    offerText(command, "--separador", options->separator, "S",
              "Entre las columnas: un signo, o «tab»; si no se da, la coma")
        ->check(isKnownSeparator);
    offerText(command, "--codificacion", options->encoding, "C",
              "utf-8, windows-1252 o utf-16 (con su marca); si no se da, utf-8")
        ->check(isKnownEncoding);
    command.add_flag("--reemplazar", options->replaces, "Quita antes las filas que ya tenga la tabla");
    command.footer(
        "Si algún valor no se puede guardar se dicen todos y no se carga nada. Las columnas que falten "
        "quedan\n"
        "en blanco. Lógicos: True/False, VERDADERO/FALSO, T/F, S/N, 1/0. Fechas: AAAA-MM-DD o AAAAMMDD.\n"
        "Una hoja de cálculo en español suele guardar con: --separador ';' --codificacion windows-1252");
}

void defineList(CLI::App& app, Command& chosen) {
    const auto options = std::make_shared<ListOptions>();
    CLI::App& command =
        addCommand(app, chosen, "listar", "Escribe los registros de una tabla como CSV", options, listar);
    requireText(command, "DIR", options->folder, folderHelp);
    requireText(command, "TABLA", options->table, tableHelp);
    CLI::Option* tag = offerText(command, "--tag", options->tag, "T", "En el orden de este tag");
    offerText(command, "--filtro", options->filter, "EXPR",
              "Sólo los registros que cumplan la condición, por ejemplo GRUPO=1");
    command.add_option("--desde", options->from, "Desde la clave más próxima a ésta, escrita como en el tag")
        ->type_name("CLAVE")
        ->needs(tag);
    command.add_option("--max", options->most, "No más de N registros")->type_name("N")->check(isCount);
    command.add_flag("--registro", options->withRecordNumber,
                     "Con el número de registro en la primera columna, _REG");
}

void defineFind(CLI::App& app, Command& chosen) {
    const auto options = std::make_shared<FindOptions>();
    CLI::App& command = addCommand(app, chosen, "buscar",
                                   "Busca un registro por su clave y lo escribe como CSV", options, buscar);
    requireText(command, "DIR", options->folder, folderHelp);
    requireText(command, "TABLA", options->table, tableHelp);
    requireText(command, "TAG", options->tag, "Tag en el que se busca");
    command.add_option("CAMPO=VALOR", options->pairs, "Valores de los campos de la clave")
        ->required()
        ->type_name("");
    command.add_flag("--cercana", options->takesNearest, "El primer registro con esa clave o detrás de ella");
}

void defineAddress(CLI::App& app, Command& chosen) {
    const auto options = std::make_shared<AddressOptions>();
    CLI::App& command = addCommand(app, chosen, "direccion", "Completa una dirección y da su código postal",
                                   options, direccion);
    requireText(command, "DIR", options->folder, folderHelp);
    offerText(command, "--municipio", options->municipality, "M", "Municipio")->required();
    offerText(command, "--provincia", options->province, "P",
              "De varios municipios con ese nombre, el de esta provincia: su código o su nombre");
    offerText(command, "--ine", options->ineCode, "C", "De varios, el de este código INE");
    offerText(command, "--tipo", options->streetType, "T", "Código del tipo de vía, por ejemplo CL");
    offerText(command, "--via", options->street, "V", "Nombre de la vía")->required();
    offerText(command, "--numero", options->number, "N",
              "Número de la casa, como se escribe: 12, 12 BIS, 12-14, «12, 3º»; S/N o «» si no tiene")
        ->required();
    command.footer("Termina con 0 sólo si la vía es del municipio y el código postal el del número. La "
                   "columna COMPLETADA\n"
                   "nombra las que no son como se dieron: de un nombre basta el comienzo. Lo que no se "
                   "resuelve se dice y\n"
                   "termina con 1; si es el número, el código postal que se escribe es el del comienzo de la "
                   "vía, como en\n"
                   "la ficha.");
}

void defineSuggest(CLI::App& app, Command& chosen) {
    const auto options = std::make_shared<SuggestOptions>();
    CLI::App& command = addCommand(
        app, chosen, "sugerir", "Sugiere municipios y vías parecidos a lo que se escribe", options, sugerir);
    requireText(command, "DIR", options->folder, folderHelp);
    CLI::Option* municipality = offerText(command, "--municipio", options->municipality, "M",
                                          "Municipio o localidad, como se escriba; o un código INE o postal");
    offerText(command, "--provincia", options->province, "P", "Sólo de esta provincia: su código o su nombre")
        ->needs(municipality);
    CLI::Option* street =
        offerText(command, "--via", options->street, "V", "Vía; si no se da, sólo se sugieren municipios")
            ->needs(municipality);
    offerText(command, "--tipo", options->type, "T", "Tipo de la vía: su código o su nombre")->needs(street);
    command.add_option("--max", options->most, "No más de N sugerencias; si no se da, 5")
        ->type_name("N")
        ->check(isCount);
    offerText(command, "--lote", options->file, "F.csv",
              "Muchas consultas: CSV en UTF-8 con las columnas municipio, provincia, via y tipo; «-» es la "
              "entrada estándar")
        ->excludes(municipality);
    command.footer(
        "Las sugerencias salen con la mejor primero; PUNTOS va de 0 a 1, y 1 es el mismo nombre. "
        "Termina con 1 si\n"
        "ninguna llega a 0,5. Con --lote la primera columna, CONSULTA, es el número de la consulta, y "
        "termina con 0\n"
        "cuando se han leído todas.");
}

void defineOverview(CLI::App& app, Command& chosen) {
    const auto options = std::make_shared<OverviewOptions>();
    CLI::App& command = addCommand(app, chosen, "ver", "Dice qué hay en ficheros del callejero oficial",
                                   options, callejeroVer);
    command.add_option("FICHEROS", options->files, "Como se publican: sueltos o dentro de un ZIP")
        ->required()
        ->type_name("");
    command.footer(
        "De cada fichero dice qué es, la fecha de su edición, sus provincias, cuántas líneas tiene y cuáles "
        "no "
        "se\nentienden. Termina con 1 si alguno no es del callejero o más de una línea de cada cien no se "
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
        "Si MUNICIPI está vacía se llena; para eso hace falta --unidades o --municipios.\nCon «extremos», "
        "una vía de un solo código tiene todos los números, y los tramos "
        "primero y "
        "último de las demás\nllegan hasta el 1 y el 9999; con «huecos» se reparten además los números entre "
        "dos "
        "códigos.");
}

/// Orders of the official street directory, under one name.
void defineDirectory(CLI::App& app, Command& chosen) {
    CLI::App* command =
        app.add_subcommand("callejero", "El callejero oficial del Instituto Nacional de Estadística");
    command->group(orderGroup);
    addHelpOption(*command);
    command->require_subcommand(1);
    defineOverview(*command, chosen);
    defineDirectoryLoad(*command, chosen);
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
              "que no se "
              "dan se reconocen por su nombre");
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

/// Adds an order that works on one table, or on all tables of the folder.
void defineForTables(CLI::App& app, Command& chosen, const char* name, const char* description,
                     ExitCode (*run)(const TablesOptions&)) {
    const auto options = std::make_shared<TablesOptions>();
    CLI::App& command = addCommand(app, chosen, name, description, options, run);
    requireText(command, "DIR", options->folder, folderHelp);
    offerText(command, "TABLA", options->table, "", "Sólo esta tabla");
}

void defineReview(CLI::App& app, Command& chosen) {
    const auto options = std::make_shared<ReviewOptions>();
    CLI::App& command = addCommand(app, chosen, "revisar",
                                   "Revisa lo que dicen las filas de MUNICIPI y POSTAL", options, revisar);
    requireText(command, "DIR", options->folder, folderHelp);
    offerText(command, "TABLA", options->table, "", "Sólo los hallazgos de ésta: MUNICIPI o POSTAL");
    offerText(command, "--salida", options->output, "F.csv",
              "Los hallazgos; si no se da, la salida estándar");
    offerText(command, "--informe", options->report, "F.html",
              "Escribe además un informe, para el navegador");
    CLI::Option* const repairs =
        offerText(command, "--reparar", options->repairs, "CLASE,...",
                  "En vez de eso, dice qué cambiaría para reparar los hallazgos de esas clases");
    CLI::Option* const writes = command.add_flag("--escribir", options->writes, "Y lo cambia");
    writes->needs(repairs);
    offerText(command, "--deshacer-en", options->undoFile, "F",
              "Fichero en el que guarda lo que había; si no se da, DIR/revisar.deshacer")
        ->needs(writes);
    command.footer(
        "Escribe una fila por hallazgo, con su gravedad (GRAVE, AVISO o NOTA), dónde está y, si la "
        "hay, una\npropuesta. Los totales de cada clase salen por la salida de errores. Termina con 0 si "
        "no hay ninguno y\ncon 1 si los hay. Sin --escribir no cambia nada; «comprobar» mira la estructura "
        "de las "
        "tablas.");
}

void defineUndo(CLI::App& app, Command& chosen) {
    const auto options = std::make_shared<UndoOptions>();
    CLI::App& command = addCommand(
        app, chosen, "deshacer", "Devuelve a como estaban las filas que cambió una orden", options, deshacer);
    requireText(command, "FICHERO", options->file, "El que guardó la orden, terminado en .deshacer");
    offerText(command, "DIR", options->folder, "", "Carpeta de las tablas, si ya no están donde estaban");
    command.footer("Lo que alguien ha cambiado después no se toca: sale como CSV, con lo que había y lo que "
                   "hay, y termina\n"
                   "con 1. Se puede repetir, también mientras otros puestos usan las tablas.");
}

void defineLocks(CLI::App& app, Command& chosen) {
    const auto options = std::make_shared<FolderOptions>();
    CLI::App& command = addCommand(app, chosen, "candados", "Prueba si los bloqueos funcionan en una carpeta",
                                   options, candados);
    requireText(command, "DIR", options->folder, "Carpeta en la que están, o estarán, las tablas");
    command.footer(
        "Lo prueba entre dos procesos de este puesto; en una unidad de red, ejecútelo en cada uno.");
}

/// Prints the same as «--help» after an order, or without an order the program's own help.
ExitCode showHelp(const CLI::App& app, const std::string& order) {
    // help() of the application would be that of the given order, which is this one.
    std::string text = app.get_formatter()->make_help(&app, app.get_name(), CLI::AppFormatMode::Normal);
    if (!order.empty()) {
        const std::vector<const CLI::App*> found =
            app.get_subcommands([&](const CLI::App* command) { return command->check_name(order); });
        if (found.empty()) {
            throw loading::Failure(describeUnknownCommand(order, app));
        }
        text = found.front()->help(app.get_name());
    }
    std::fputs(text.c_str(), stdout);
    return ExitCode::done;
}

/// `group`: the heading under which the help shows it; empty hides it.
void defineHelp(CLI::App& app, Command& chosen, const char* name, const char* group) {
    const auto order = std::make_shared<std::string>();
    CLI::App* command = app.add_subcommand(name, "Explica una orden");
    command->group(group);
    addHelpOption(*command);
    command->add_option("ORDEN", *order, "La orden; sin ella, el programa")->type_name("");
    command->callback([&app, &chosen, order] { chosen = [&app, order] { return showHelp(app, *order); }; });
}

} // namespace

void defineCommands(CLI::App& app, Command& chosen) {
    speakSpanish(app);
    app.description("Tablas de códigos postales: crear, cargar, consultar y comprobar");
    app.set_version_flag("--version", AMBCP_VERSION, "Muestra la versión")->group(optionGroup);
    app.require_subcommand(1);
    defineCreate(app, chosen);
    defineLoad(app, chosen);
    defineList(app, chosen);
    defineFind(app, chosen);
    defineAddress(app, chosen);
    defineSuggest(app, chosen);
    defineValidate(app, chosen);
    defineDirectory(app, chosen);
    defineForTables(app, chosen, "comprobar", "Comprueba tablas e índices sin cambiar nada", comprobar);
    defineForTables(app, chosen, "reindexar", "Rehace los índices a partir de los registros", reindexar);
    defineForTables(app, chosen, "compactar", "Quita las filas borradas y rehace los índices", compactar);
    defineReview(app, chosen);
    defineUndo(app, chosen);
    defineLocks(app, chosen);
    defineHelp(app, chosen, "help", orderGroup);
    defineHelp(app, chosen, "ayuda", "");
    // Last, because every subcommand would inherit a footer set before.
    app.footer("«ambcp help ORDEN» explica cada orden.\n"
               "Termina con 0 si se ha hecho, 1 si la respuesta es que no (no se encuentra, hay problemas)\n"
               "y 2 si no se ha podido hacer; el motivo sale entonces por la salida de errores.");
}

} // namespace ambcp
