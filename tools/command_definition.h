// The pieces of which the definitions of subcommands are made.
#pragma once

#include <memory>
#include <string>

#include <CLI/CLI.hpp>

#include "tools/command_line.h"
#include "tools/spanish_help.h"

namespace ambcp {

inline constexpr const char* orderGroup = "Órdenes";
inline constexpr const char* folderHelp = "Carpeta de las tablas";
inline constexpr const char* tableHelp = "Tabla, con o sin .DBF";

// Checks of a value: what is wrong with it, or nothing.
[[nodiscard]] std::string isCount(const std::string& text);
[[nodiscard]] std::string isKnownSeparator(const std::string& text);
[[nodiscard]] std::string isKnownEncoding(const std::string& text);

/// Adds a subcommand whose options, kept alive with it, are passed to a function.
template<typename Options>
[[nodiscard]] CLI::App& addCommand(CLI::App& app, Command& chosen, const char* name, const char* description,
                                   const std::shared_ptr<Options>& options, ExitCode (*run)(const Options&)) {
    CLI::App* command = app.add_subcommand(name, description);
    command->group(orderGroup);
    addHelpOption(*command);
    command->callback([&chosen, options, run] { chosen = [options, run] { return run(*options); }; });
    return *command;
}

/// Adds an argument or option that has to be given.
void requireText(CLI::App& command, const char* name, std::string& value, const char* help);

/// Adds one that may be given. `type`: what the help calls its value.
CLI::Option* offerText(CLI::App& command, const char* name, std::string& value, const char* type,
                       const char* help);

// Subcommands with many options.
void defineDirectory(CLI::App& app, Command& chosen);
void defineValidate(CLI::App& app, Command& chosen);

} // namespace ambcp
