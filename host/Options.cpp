// Reads the program's command line.
#include "host/Options.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace host {
namespace {

[[noreturn]] void refuse(const QString& reason) {
    std::fprintf(stderr, "ambrel: %s\n", qUtf8Printable(reason));
    std::exit(exitCannot);
}

} // namespace

Options readOptions(const QCoreApplication& application) {
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Ambrel: ficha de clientes con direcciones postales que se completan solas.\n"
                       "La primera vez crea unas tablas de muestra en la carpeta de datos del usuario.\n"
                       "Los pasos de un guion y los nombres de sus objetos: «man ambrel»."));
    const QCommandLineOption help({QStringLiteral("h"), QStringLiteral("help"), QStringLiteral("ayuda")},
                                  QStringLiteral("Muestra esta ayuda y termina."));
    const QCommandLineOption version({QStringLiteral("v"), QStringLiteral("version")},
                                     QStringLiteral("Muestra la versión y termina."));
    const QCommandLineOption folder(QStringLiteral("carpeta"),
                                    QStringLiteral("Trabaja con las tablas de la carpeta DIR."),
                                    QStringLiteral("DIR"));
    const QCommandLineOption script(
        QStringLiteral("guion"),
        QStringLiteral(
            "Ejecuta los pasos de FICHERO y termina: 0 si se hicieron todos, 3 si alguno no se pudo."),
        QStringLiteral("FICHERO"));
    const QCommandLineOption ini(QStringLiteral("ini"), QStringLiteral("Lee la configuración de FICHERO."),
                                 QStringLiteral("FICHERO"));
    parser.addOptions({help, version, folder, script, ini});
    if (!parser.parse(application.arguments())) {
        refuse(parser.errorText());
    }
    if (parser.isSet(help)) {
        parser.showHelp(0);
    }
    if (parser.isSet(version)) {
        parser.showVersion();
    }
    if (!parser.positionalArguments().isEmpty()) {
        refuse(QStringLiteral("Sobra «%1».").arg(parser.positionalArguments().constFirst()));
    }
    return {parser.value(folder), parser.value(script), parser.value(ini)};
}

bool needsNoScreen(int argumentCount, char** arguments) {
    constexpr std::array<std::string_view, 6> names{"guion", "h", "help", "ayuda", "v", "version"};
    for (int index = 1; index < argumentCount; ++index) {
        std::string_view option = arguments[index];
        if (!option.starts_with('-')) {
            continue;
        }
        option.remove_prefix(std::min(option.size(), option.find_first_not_of('-')));
        option = option.substr(0, option.find('='));
        if (std::ranges::find(names, option) != names.end()) {
            return true;
        }
    }
    return false;
}

} // namespace host
