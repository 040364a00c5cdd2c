// What keeps a command from doing its work.
#pragma once

#include <stdexcept>

namespace ambcp {

/// `what()` is a Spanish UTF-8 text for standard error; the program then ends with exit code 2.
class Failure : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// A table that is not to be touched before somebody has looked after it; the program then ends with exit
/// code 1.
class DamagedTable : public Failure {
public:
    using Failure::Failure;
};

} // namespace ambcp
