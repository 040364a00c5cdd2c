// Describes errors of the command line, in Spanish.
#pragma once

#include <string>

namespace CLI {
class App;
class ParseError;
} // namespace CLI

namespace ambcp {

/// Describes a parsing error, and names the order whose help explains it.
[[nodiscard]] std::string describeUsageError(const CLI::ParseError& error, const CLI::App& app);

/// Says that a command has no such order, which one may have been meant, and which help lists them. `call`:
/// how the command is called.
[[nodiscard]] std::string describeUnknownCommand(const std::string& typed, const CLI::App& app,
                                                 const std::string& call);

} // namespace ambcp
