// The demo host: a customer's address form over the postal-code package.
#include <QApplication>
#include <cstdio>
#include <exception>
#include <optional>

#include "host/DataFolder.h"
#include "host/MainWindow.h"
#include "host/Options.h"
#include "host/SpanishTexts.h"
#include "host/Style.h"
#include "host/script/ScriptRunner.h"
#include "loading/failure.h"
#include "loading/text_source.h"
#include "package/AmbCodPostales.h"
#include "sample/Sample.h"
#include "services/Confamb.h"
#include "services/Mensaje.h"

namespace {

void printLine(std::FILE* stream, const QString& line) {
    std::fprintf(stream, "%s\n", line.toUtf8().constData());
    std::fflush(stream);
}

void printResult(const QString& line) { printLine(stdout, line); }

void printComplaint(const QString& line) { printLine(stderr, QStringLiteral("ambrel: ") + line); }

/// Chooses a platform without a screen where there is none. False if the command line needs a screen then.
bool choosePlatform(int argc, char** argv) {
    const bool hasScreen =
        !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
    if (hasScreen || !qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        return true;
    }
    qputenv("QT_QPA_PLATFORM", "offscreen");
    return host::needsNoScreen(argc, argv);
}

/// The host's province and municipality when its configuration names none.
constexpr int homeProvince = 28;
constexpr const char* home = "MADRID";
constexpr int searchByName = 3; // how the card of a street opens the list of municipalities

void configure(const host::Options& options) {
    Config.setProvince(homeProvince, home, home);
    Config.setMunicipality(searchByName, home);
    if (!options.iniFile.isEmpty()) {
        Config.loadIni(options.iniFile.toStdString());
    }
    host::chooseFolder(options.folder, [](const std::string& folder) { ambrel::createSample(folder); });
}

/// Null if the file cannot be read; the reason is then printed.
std::optional<host::script::ParsedScript> readScript(const QString& name) {
    try {
        const std::string text = loading::wholeText(loading::fileSource(name.toStdString()));
        return host::script::parseScript(QString::fromStdString(text));
    } catch (const loading::Failure& error) {
        printComplaint(QStringLiteral("guion ") + QString::fromUtf8(error.what()));
        return std::nullopt;
    }
}

int runInteractively(const host::Options& options) {
    try {
        configure(options);
        host::MainWindow window(host::hostDatabase);
        window.show();
        return QApplication::exec();
    } catch (const std::exception& error) {
        printComplaint(QString::fromUtf8(error.what()));
        Mensaje_Error(QString::fromUtf8(error.what()), QStringLiteral("Ambrel"));
        return host::exitCannot;
    }
}

int runScript(const host::Options& options) {
    auto script = readScript(options.scriptFile);
    if (!script) {
        return host::exitCannot;
    }
    QApplication::setQuitOnLastWindowClosed(false); // only the script ends the program
    host::script::ScriptRunner runner(printResult, printComplaint);
    QObject::connect(&runner, &host::script::ScriptRunner::finished, qApp,
                     [](int exitCode) { QApplication::exit(exitCode); });
    try {
        configure(options);
        host::MainWindow window(host::hostDatabase);
        window.show();
        runner.start(&window, std::move(*script), options.scriptFile);
        return runner.exitCode() ? *runner.exitCode() : QApplication::exec();
    } catch (const std::exception& error) {
        printComplaint(QString::fromUtf8(error.what()));
        return host::exitCannot;
    }
}

} // namespace

int main(int argc, char** argv) {
    if (!choosePlatform(argc, argv)) {
        printComplaint(
            QStringLiteral("no hay ninguna pantalla; sin ella sólo se ejecutan guiones (--guion)."));
        return host::exitCannot;
    }
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("ambrel"));
    QApplication::setApplicationVersion(QString::fromLatin1(ambrel::version()));
    // The name used in packaging/desktop, so that a desktop knows whose window this is.
    QApplication::setDesktopFileName(QStringLiteral("es.ambrel.CodigosPostales"));
    host::SpanishTexts::install();
    const host::Options options = host::readOptions(application);
    if (options.scriptFile.isEmpty()) {
        host::applyStyle(application);
    } else {
        host::applyFixedLook(application); // its pictures are compared
    }
    return options.scriptFile.isEmpty() ? runInteractively(options) : runScript(options);
}
