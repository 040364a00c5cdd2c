// The help of a command line, in Spanish.
#include "tools/spanish_help.h"

#include <memory>

#include <CLI/CLI.hpp>

namespace ambcp {

void addHelpOption(CLI::App& app) {
    app.set_help_flag("-h,--help", "Muestra esta ayuda")->group(optionGroup);
}

void speakSpanish(CLI::App& app) {
    const auto formatter = std::make_shared<CLI::Formatter>();
    formatter->label("Usage", "Uso");
    formatter->label("OPTIONS", "OPCIONES");
    formatter->label("Positionals", "Argumentos");
    formatter->label("SUBCOMMAND", "ORDEN");
    formatter->label("REQUIRED", "(obligatorio)");
    formatter->label("Needs", "con");
    formatter->label("Excludes", "sin");
    app.formatter(formatter);
    app.option_defaults()->group(optionGroup);
    addHelpOption(app);
}

} // namespace ambcp
