// The program callejero-simulado as scripts use it.
#include <gtest/gtest.h>

#include <array>
#include <csignal>
#include <cstdio>
#include <string>
#include <vector>

#include <sys/wait.h>
#include <unistd.h>

#include "import/Document.h"
#include "import/Envelope.h"
#include "import/ResponseReaders.h"
#include "import/Transport.h"
#include "services/Confamb.h"

namespace {

/// The running program; its standard output is read here, and its messages are kept out of the test's.
class Program {
public:
    explicit Program(std::vector<std::string> arguments) {
        std::array<int, 2> ends{};
        if (pipe(ends.data()) != 0) {
            throw std::runtime_error("no pipe");
        }
        arguments.insert(arguments.begin(), CALLEJERO_PATH);
        std::vector<char*> words;
        for (std::string& argument : arguments) {
            words.push_back(argument.data());
        }
        words.push_back(nullptr);
        process_ = fork();
        if (process_ == 0) {
            dup2(ends[1], STDOUT_FILENO);
            if (!std::freopen("/dev/null", "w", stderr)) {
                _exit(126);
            }
            execv(CALLEJERO_PATH, words.data());
            _exit(127);
        }
        close(ends[1]);
        output_ = fdopen(ends[0], "r");
    }
    ~Program() {
        if (process_ > 0) {
            static_cast<void>(end(SIGKILL));
        }
        std::fclose(output_);
    }
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    std::string line() {
        std::array<char, 256> text{};
        const std::string read = std::fgets(text.data(), text.size(), output_) ? text.data() : "";
        return read.substr(0, read.find('\n'));
    }
    /// Its output until it ends.
    std::string allOutput() {
        std::string all;
        for (int byte = std::fgetc(output_); byte != EOF; byte = std::fgetc(output_)) {
            all += static_cast<char>(byte);
        }
        return all;
    }

    /// Its exit code; negative for a signal that killed it.
    int end(int signal) {
        kill(process_, signal);
        return wait();
    }
    int wait() {
        int status = 0;
        waitpid(process_, &status, 0);
        process_ = 0;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    }

private:
    pid_t process_ = 0;
    std::FILE* output_ = nullptr;
};

class CallejeroProgram : public ::testing::Test {
protected:
    CallejeroProgram() { setenv("no_proxy", "127.0.0.1", 1); }
    ~CallejeroProgram() override { Config.directoryService = {}; }

    static std::string askStreets() {
        return ambrel::postSoap(ambrel::directoryUrl(), ambrel::soapAction("ConsultaVia"),
                                ambrel::streetsRequest("LA RIOJA", "HARO"));
    }
};

TEST_F(CallejeroProgram, PrintsItsAddressServesTheSampleAndEndsOnSigterm) {
    Program program({});
    Config.directoryService.server = program.line();
    ambrel::DirectoryDocument document;
    document.load(askStreets());
    EXPECT_EQ(ambrel::readStreets(document).reading, ambrel::Reading::Whole);
    EXPECT_EQ(program.end(SIGTERM), 0);
    EXPECT_THROW(askStreets(), ambrel::TransportError);
}

TEST_F(CallejeroProgram, MisbehavesOnRequest) {
    Program program({"--falla", "ConsultaVia:HARO=corta"});
    Config.directoryService.server = program.line();
    EXPECT_THROW(askStreets(), ambrel::TransportError);
    EXPECT_EQ(program.end(SIGINT), 0);
}

TEST_F(CallejeroProgram, RefusesWhatItDoesNotUnderstand) {
    for (const std::vector<std::string>& arguments : {std::vector<std::string>{"--falla", "ConsultaVia=nada"},
                                                      {"--puerto", "x"},
                                                      {"--carpeta", "/no/hay"}}) {
        Program program(arguments);
        EXPECT_EQ(program.line(), "");
        EXPECT_EQ(program.wait(), 2);
    }
}

TEST_F(CallejeroProgram, ItsHelpIsSpanish) {
    Program program({"--help"});
    const std::string help = program.allOutput();
    for (const char* const line : {"Uso: callejero-simulado [OPCIONES]", "Opciones:", "--puerto N ",
                                   "--espera MS ", "--falla OPERACIÓN[:NOMBRE]=MODO "}) {
        EXPECT_NE(help.find(line), std::string::npos) << line << " is not in:\n" << help;
    }
    for (const char* const word : {"INT", "TEXT", "OPTIONS", "Usage", " in ["}) {
        EXPECT_EQ(help.find(word), std::string::npos) << word << " is in:\n" << help;
    }
    EXPECT_EQ(program.wait(), 0);
}

TEST_F(CallejeroProgram, ItsHelpExplainsEveryModeAndItsVersionIsANumber) {
    Program program({"--help"});
    const std::string help = program.allOutput();
    for (const char* const line :
         {"  rechaza         se corta", "  calla           nada", "  enorme-trozos   1 GiB"}) {
        EXPECT_NE(help.find(line), std::string::npos) << line << " is not in:\n" << help;
    }
    EXPECT_EQ(program.wait(), 0);
    Program version({"--version"});
    EXPECT_EQ(version.line().find_first_not_of("0123456789."), std::string::npos);
    EXPECT_EQ(version.wait(), 0);
}

TEST_F(CallejeroProgram, RefusesAPortInUse) {
    Program first({});
    const std::string url = first.line();
    Program second({"--puerto", url.substr(url.rfind(':') + 1)});
    EXPECT_EQ(second.line(), "");
    EXPECT_EQ(second.wait(), 2);
}

} // namespace
