// Failures that prevent a load or a command.
#pragma once

#include <stdexcept>

namespace loading {

/// `what()` is a Spanish UTF-8 text for standard error; the program then ends with exit code 2.
class Failure : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace loading
