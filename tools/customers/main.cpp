// clientes-inventados: writes a file of customers to try `ambcp validar` with.
#include <cstdint>
#include <cstdio>
#include <exception>
#include <fstream>
#include <string>

#include <CLI/CLI.hpp>

#include "dbase/dbf/codepage.h"
#include "tools/customers/InventedCustomers.h"
#include "tools/spanish_help.h"
#include "tools/usage_errors.h"

namespace {

struct Options {
    std::string file, truth;
    std::uint64_t rows = 100'000, seed = 1;
    bool isUtf8 = false;
};

constexpr int exitCannot = 2; // the same as in ambcp

void define(CLI::App& app, Options& options) {
    ambcp::speakSpanish(app);
    app.add_option("FICHERO", options.file,
                   "El CSV que se escribe, como lo guarda una hoja de cálculo: punto y coma, Windows-1252")
        ->required();
    app.add_option("--filas", options.rows, "Cuántos clientes; si no se dice, 100000")
        ->group(ambcp::optionGroup);
    app.add_option("--verdad", options.truth, "Otro CSV, con lo que debe resultar de cada fila")
        ->group(ambcp::optionGroup);
    app.add_option("--semilla", options.seed, "Otra semilla da otros clientes")->group(ambcp::optionGroup);
    app.add_flag("--utf8", options.isUtf8, "Escribe en UTF-8")->group(ambcp::optionGroup);
}

std::ofstream opened(const std::string& file) {
    std::ofstream stream(file, std::ios::binary | std::ios::trunc);
    if (!stream) {
        throw std::runtime_error(file + ": no se puede escribir");
    }
    return stream;
}

void require(std::ofstream& stream, const std::string& file) {
    if (!stream.flush()) {
        throw std::runtime_error(file + ": no se puede escribir");
    }
}

void write(const Options& options) {
    const dbase::CodePage& page = dbase::CodePage::windows1252();
    const auto encoded = [&](const std::string& text) {
        return options.isUtf8 ? text : page.fromUtf8(text).value_or("?");
    };
    std::ofstream rows = opened(options.file), truth;
    if (!options.truth.empty()) {
        truth = opened(options.truth);
        truth << customers::truthHeading();
    }
    rows << customers::headingLine();
    customers::InventedCustomers invented(options.seed);
    for (std::uint64_t i = 0; i < options.rows; ++i) {
        const customers::Customer customer = invented.next();
        rows << encoded(customers::rowOf(customer));
        if (!options.truth.empty()) {
            truth << customers::truthOf(customer);
        }
    }
    require(rows, options.file);
    if (!options.truth.empty()) {
        require(truth, options.truth);
    }
}

} // namespace

int main(int argc, char** argv) {
    Options options;
    CLI::App app(
        "Clientes inventados en las calles de la muestra, con toda clase de faltas en sus direcciones",
        "clientes-inventados");
    define(app, options);
    try {
        app.parse(argc, argv);
        write(options);
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success)) {
            return app.exit(error);
        }
        std::fprintf(stderr, "clientes-inventados: %s\n", ambcp::describeUsageError(error, app).c_str());
        return exitCannot;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "clientes-inventados: %s\n", error.what());
        return exitCannot;
    }
    return 0;
}
