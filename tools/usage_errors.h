// What is wrong with a command line, in Spanish.
#pragma once

#include <string>

namespace CLI {
class App;
class ParseError;
} // namespace CLI

namespace ambcp {

/// What the error that parsing raised means, and whose help explains it.
[[nodiscard]] std::string describeUsageError(const CLI::ParseError& error, const CLI::App& app);

/// That there is no such order, which one may have been meant, and whose help tells.
[[nodiscard]] std::string describeUnknownCommand(const std::string& typed, const CLI::App& app);

} // namespace ambcp
