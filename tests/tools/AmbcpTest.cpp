// Runs the built program.
#include "AmbcpTest.h"

#include <cstdio>
#include <fstream>
#include <sstream>

#include <sys/wait.h>

namespace ambcp::test {
namespace {

std::string quoted(const std::string& text) {
    std::string result = "'";
    for (const char c : text) {
        result += c == '\'' ? "'\\''" : std::string(1, c);
    }
    return result + '\'';
}

} // namespace

Outcome AmbcpTest::shell(const std::string& command) const {
    const TemporaryFolder scratch;
    const std::string errorFile = scratch / "errors";
    const std::string line = "cd " + quoted(folder.path()) + " && AMBCP=" + quoted(AMBCP_PATH) + " && { " +
                             command + "\n} 2>" + quoted(errorFile);
    Outcome run;
    FILE* const pipe = popen(line.c_str(), "r");
    if (pipe == nullptr) {
        ADD_FAILURE() << "no shell";
        return run;
    }
    char piece[4096];
    while (const std::size_t size = std::fread(piece, 1, sizeof piece, pipe)) {
        run.output.append(piece, size);
    }
    const int status = pclose(pipe);
    run.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    run.errors = content(errorFile);
    return run;
}

Outcome AmbcpTest::ambcp(const std::vector<std::string>& arguments) const {
    std::string command = "\"$AMBCP\"";
    for (const std::string& argument : arguments) {
        command += ' ' + quoted(argument);
    }
    return shell(command);
}

std::string AmbcpTest::done(const std::vector<std::string>& arguments) const {
    const Outcome run = ambcp(arguments);
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_EQ(run.errors, "");
    return run.output;
}

std::string AmbcpTest::refused(const std::vector<std::string>& arguments) const {
    const Outcome run = ambcp(arguments);
    EXPECT_EQ(run.exitCode, 2) << run.output;
    EXPECT_EQ(run.output, "");
    EXPECT_NE(run.errors, "");
    return run.errors;
}

std::string AmbcpTest::content(const std::string& file) const {
    std::ostringstream text;
    text << std::ifstream(file.starts_with('/') ? file : folder / file, std::ios::binary).rdbuf();
    return text.str();
}

} // namespace ambcp::test
