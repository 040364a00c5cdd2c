// edicion-inventada: writes an edition of the official street directory to try `ambcp callejero` with.
#include <cstdint>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <string>

#include <CLI/CLI.hpp>

#include "tools/edition/OfficialEdition.h"
#include "tools/spanish_help.h"
#include "tools/usage_errors.h"

namespace {

struct Program {
    std::string folder, realData;
    std::size_t places = 8000;
    edition::Options options{.stretches = 2'000'000};
    bool hasOldLayout = false;
};

constexpr int exitCannot = 2; // the same as in ambcp

void define(CLI::App& app, Program& program) {
    ambcp::speakSpanish(app);
    app.add_option("DIR", program.folder, "La carpeta en que se escriben los ficheros; se crea si falta")
        ->required();
    app.add_option("--tramos", program.options.stretches,
                   "Cuántos tramos, más o menos; si no se dice, 2000000")
        ->group(ambcp::optionGroup);
    app.add_option("--datos", program.realData,
                   "Carpeta con municipios.csv y codigos_postales.csv de verdad, para no inventarlos")
        ->group(ambcp::optionGroup);
    app.add_option("--municipios", program.places, "Cuántos municipios se inventan; si no se dice, 8000")
        ->group(ambcp::optionGroup);
    app.add_option("--semilla", program.options.seed, "Otra semilla da otras vías")
        ->group(ambcp::optionGroup);
    app.add_flag("--antiguo", program.hasOldLayout, "Con el diseño de registro anterior a julio de 2025")
        ->group(ambcp::optionGroup);
}

void write(Program& program) {
    program.options.repeatsName = !program.hasOldLayout;
    std::filesystem::create_directories(program.folder);
    const edition::Files files =
        edition::writeEdition(program.folder,
                              program.realData.empty() ? edition::inventedPlaces(program.places)
                                                       : edition::realPlaces(program.realData),
                              program.options);
    for (const std::string& file :
         {files.stretches, files.streets, files.pseudoStreets, files.units, files.municipalities}) {
        std::printf("%s\n", file.c_str());
    }
}

} // namespace

int main(int argc, char** argv) {
    Program program;
    CLI::App app("Una edición inventada del callejero oficial, en el formato en que se publica",
                 "edicion-inventada");
    define(app, program);
    try {
        app.parse(argc, argv);
        write(program);
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success)) {
            return app.exit(error);
        }
        std::fprintf(stderr, "edicion-inventada: %s\n", ambcp::describeUsageError(error, app).c_str());
        return exitCannot;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "edicion-inventada: %s\n", error.what());
        return exitCannot;
    }
    return 0;
}
