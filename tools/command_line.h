// The command line: its options and their help.
#pragma once

#include <functional>

#include "tools/commands.h"

namespace CLI {
class App;
}

namespace ambcp {

/// What the command line asks for, ready to run.
using Command = std::function<ExitCode()>;

/// Adds all subcommands to an application; parsing then stores the chosen one in `chosen`, to be run while
/// the application lives.
void defineCommands(CLI::App& app, Command& chosen);

} // namespace ambcp
