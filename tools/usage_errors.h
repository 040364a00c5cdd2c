// What is wrong with a command line, in Spanish.
#pragma once

#include <string>

namespace CLI {
class ParseError;
}

namespace ambcp {

[[nodiscard]] std::string describeUsageError(const CLI::ParseError& error);

} // namespace ambcp
