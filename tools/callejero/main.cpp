// callejero-simulado, a street-directory service for trying imports without a network.
#include <charconv>
#include <csignal>
#include <cstdio>
#include <exception>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "tools/callejero/Server.h"
#include "tools/spanish_help.h"
#include "tools/usage_errors.h"

namespace {

struct Options {
    std::string folder;
    int port = 0;
    std::vector<std::string> faults;
    int delayMs = 0;
};

constexpr int largestPort = 65'535;
constexpr int longestDelayMs = 600'000;
constexpr int exitCannot = 2; // the same as in ambcp

/// Whole numbers from 0; the library's own check reports in English, in the help too.
CLI::Validator upTo(int largest) {
    const auto check = [largest](const std::string& text) {
        int value = -1;
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
        const bool isGood =
            error == std::errc() && end == text.data() + text.size() && value >= 0 && value <= largest;
        return isGood ? std::string() : "«" + text + "» no es un número de 0 a " + std::to_string(largest);
    };
    return {check, ""};
}

void define(CLI::App& app, Options& options) {
    ambcp::speakSpanish(app);
    app.set_version_flag("--version", CALLEJERO_VERSION, "Muestra la versión")->group(ambcp::optionGroup);
    app.add_option("--carpeta", options.folder, "Respuestas que se sirven; sin ella, las de la muestra")
        ->type_name("DIR");
    app.add_option("--puerto", options.port, "Puerto; 0, uno cualquiera que esté libre")
        ->type_name("N")
        ->check(upTo(largestPort));
    app.add_option("--espera", options.delayMs, "Milisegundos que tarda cada respuesta")
        ->type_name("MS")
        ->check(upTo(longestDelayMs));
    app.add_option("--falla", options.faults, "Operación que falla, y cómo")
        ->type_name("OPERACIÓN[:NOMBRE]=MODO");
    app.footer(
        "OPERACIÓN: ConsultaProvincia, ConsultaMunicipio, ConsultaVia, todo.\n"
        "NOMBRE: sólo con esta provincia o este municipio.\n"
        "MODO, lo que llega en vez de la respuesta:\n" +
        callejero::faultExplanations() +
        "\nTermina con 0 cuando se le interrumpe y con 2 si no puede empezar; el motivo sale por la salida\n"
        "de errores.");
}

void log(const std::string& line) { std::fprintf(stderr, "callejero-simulado: %s\n", line.c_str()); }

/// Blocks the signals that end the program, so that the thread waiting for them receives them.
sigset_t blockEndSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGTERM);
    sigaddset(&signals, SIGINT);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    return signals;
}

void run(const Options& options) {
    const sigset_t endSignals = blockEndSignals();
    callejero::Server server(options.folder.empty() ? callejero::sampleDirectory()
                                                    : callejero::folderDirectory(options.folder),
                             options.port, log);
    for (const std::string& fault : options.faults) {
        server.addFault(callejero::readFaultRule(fault));
    }
    server.setDelay(std::chrono::milliseconds(options.delayMs));
    std::printf("%s\n", server.url().c_str());
    std::fflush(stdout);
    int signal = 0;
    sigwait(&endSignals, &signal);
    server.stop();
}

} // namespace

int main(int argc, char** argv) {
    std::signal(SIGPIPE, SIG_IGN);
    Options options;
    CLI::App app("Servicio de callejero simulado, para probar la importación sin red", "callejero-simulado");
    define(app, options);
    try {
        app.parse(argc, argv);
        run(options);
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success)) {
            return app.exit(error);
        }
        log(ambcp::describeUsageError(error, app));
        return exitCannot;
    } catch (const std::exception& error) {
        log(error.what());
        return exitCannot;
    }
    return 0;
}
