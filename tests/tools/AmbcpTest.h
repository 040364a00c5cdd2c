// Fixture of the tests that run the built program.
#pragma once

#include <string>
#include <vector>

#include "support/TableTest.h"

namespace ambcp::test {

struct Outcome {
    int exitCode = -1; // 128 plus the signal that killed it
    std::string output, errors;
};

/// The tables of the test's folder go through the full check at its end.
class AmbcpTest : public ambrel::test::TableTest {
protected:
    /// Runs the program with these arguments in the test's folder.
    [[nodiscard]] Outcome ambcp(const std::vector<std::string>& arguments) const;
    /// Runs a shell command there, in which $AMBCP is the program.
    [[nodiscard]] Outcome shell(const std::string& command) const;

    /// Runs the program and expects exit code 0; returns its output.
    std::string done(const std::vector<std::string>& arguments) const;
    /// Runs the program and expects exit code 2, a reason, which is returned, and no output.
    std::string refused(const std::vector<std::string>& arguments) const;

    /// Bytes of a file, absolute or in the test's folder.
    [[nodiscard]] std::string content(const std::string& file) const;
};

} // namespace ambcp::test
