// Runs other software that reads our tables.
#include "OtherReaders.h"

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <sstream>
#include <stdexcept>

#include "support/TemporaryFolder.h"

namespace dbase::test {

namespace {

std::string quoted(const std::string& text) { return '\'' + text + '\''; }

/// The output of perl, errors included; it complains of a locale that the machine lacks.
std::string runPerlCommand(const std::string& arguments) {
    const std::string command = "LC_ALL=C perl " + arguments;
    const auto close = [](std::FILE* file) { pclose(file); };
    const std::unique_ptr<std::FILE, decltype(close)> pipe(popen((command + " 2>&1").c_str(), "r"), close);
    if (!pipe) {
        throw std::runtime_error("cannot run " + command);
    }
    std::string output;
    for (int byte = std::fgetc(pipe.get()); byte != EOF; byte = std::fgetc(pipe.get())) {
        output.push_back(static_cast<char>(byte));
    }
    return output;
}

} // namespace

bool hasPerlReader() {
    static const bool has = std::system("perl -MXBase -MXBase::Index -e 1 >/dev/null 2>&1") == 0;
    return has;
}

std::string verifierComplaint(const std::string& tableFile, bool isStrict) {
    const std::string output =
        runPerlCommand(quoted(AMBREL_VERIFIER) + (isStrict ? " --strict " : " ") + quoted(tableFile));
    return output.starts_with("OK:") ? std::string() : output;
}

std::vector<std::string> runPerl(const std::string& script, const std::vector<std::string>& arguments) {
    const TemporaryFolder folder;
    std::string command = quoted(folder.write("script.pl", script));
    for (const std::string& argument : arguments) {
        command += ' ' + quoted(argument);
    }
    std::istringstream output(runPerlCommand(command));
    std::vector<std::string> lines;
    for (std::string line; std::getline(output, line);) {
        lines.push_back(line);
    }
    return lines;
}

} // namespace dbase::test
