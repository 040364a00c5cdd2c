// The command line: its options and their help.
#include "tools/command_line.h"

#include <cstdio>
#include <memory>
#include <utility>

#include "loading/failure.h"
#include "tools/command_definition.h"
#include "tools/usage_errors.h"

namespace ambcp {

namespace {

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
    CLI::Option* const output = offerText(command, "--salida", options->output, "F.csv",
                                          "Los hallazgos; si no se da, la salida estándar");
    CLI::Option* const report = offerText(command, "--informe", options->report, "F.html",
                                          "Escribe además un informe, para el navegador");
    CLI::Option* const repairs =
        offerText(command, "--reparar", options->repairs, "CLASE,...",
                  "En vez de eso, dice qué cambiaría para reparar los hallazgos de esas clases")
            ->check([](const std::string& classes) {
                return classes.empty() ? std::string("«» no es ninguna clase") : std::string();
            })
            ->excludes(output)
            ->excludes(report);
    CLI::Option* const writes = command.add_flag("--escribir", options->writes, "Y lo cambia");
    writes->needs(repairs);
    offerText(command, "--deshacer-en", options->undoFile, "F",
              "Fichero en el que guarda lo que había; si no se da, DIR/revisar.deshacer")
        ->needs(writes);
    command.footer(
        "Escribe una fila por hallazgo, con su gravedad (GRAVE, AVISO o NOTA), dónde está y, si la hay, "
        "una\n"
        "propuesta. Los totales de cada clase salen por la salida de errores. Termina con 0 si no hay "
        "ninguno y\n"
        "con 1 si los hay. Sin --escribir no cambia nada; «comprobar» mira la estructura de las tablas.");
}

void defineUndo(CLI::App& app, Command& chosen) {
    const auto options = std::make_shared<UndoOptions>();
    CLI::App& command = addCommand(app, chosen, "deshacer",
                                   "Deja como estaban las filas que cambió una orden", options, deshacer);
    requireText(command, "FICHERO", options->file, "El que guardó la orden, terminado en .deshacer");
    offerText(command, "DIR", options->folder, "",
              "Carpeta de las tablas, si ya no están donde estaban o hay otras junto al fichero");
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
ExitCode showHelp(const CLI::App& app, const std::vector<std::string>& order) {
    const CLI::App* command = &app;
    std::string call = app.get_name(), before;
    for (const std::string& word : order) {
        const std::vector<const CLI::App*> found =
            command->get_subcommands([&](const CLI::App* one) { return one->check_name(word); });
        if (found.empty()) {
            throw loading::Failure(describeUnknownCommand(word, *command, call));
        }
        command = found.front();
        before = std::exchange(call, call + ' ' + word);
    }
    // help() of the application would be that of the given order, which is this one.
    const std::string text = order.empty()
                                 ? app.get_formatter()->make_help(&app, call, CLI::AppFormatMode::Normal)
                                 : command->help(before);
    std::fputs(text.c_str(), stdout);
    return ExitCode::done;
}

/// `group`: the heading under which the help shows it; empty hides it.
void defineHelp(CLI::App& app, Command& chosen, const char* name, const char* group) {
    const auto order = std::make_shared<std::vector<std::string>>();
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
