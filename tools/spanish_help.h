// The help of a command line, in Spanish.
#pragma once

namespace CLI {
class App;
}

namespace ambcp {

/// Heading of the options in a help.
inline constexpr const char* optionGroup = "Opciones";

/// Gives an application, and the subcommands added to it afterwards, Spanish headings and labels, and the
/// option that shows its help.
void speakSpanish(CLI::App& app);

/// The option that shows the help of an application or subcommand.
void addHelpOption(CLI::App& app);

} // namespace ambcp
