// ambcp, the administrator's command for the postal tables.

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <exception>
#include <new>

#include <CLI/CLI.hpp>
#include <fcntl.h>
#include <unistd.h>

#include "dbase/system/notices.h"
#include "dbase/system/system_reason.h"
#include "loading/csv.h"
#include "loading/failure.h"
#include "tools/command_line.h"
#include "tools/complain.h"
#include "tools/cut_table.h"
#include "tools/usage_errors.h"

namespace {

using ambcp::ExitCode;

/// A table must never be opened as one of the standard files, because output would be written into it.
void fillStandardFiles() {
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(descriptor, F_GETFD) < 0 && open("/dev/null", O_RDWR) < 0) {
            _exit(ExitCode::failed);
        }
    }
}

ExitCode run(const ambcp::Command& command) {
    try {
        const ExitCode result = command();
        if (std::fflush(stdout) == 0 || errno == EPIPE) {
            return result;
        }
        ambcp::complain("no se puede escribir la salida: " + dbase::systemReason(errno));
    } catch (const loading::OutputClosed&) {
        return ExitCode::done; // the reader has read enough
    } catch (const ambcp::DamagedTable& error) {
        ambcp::complain(error.what());
        return ExitCode::negative;
    } catch (const std::bad_alloc&) {
        ambcp::complain("no queda memoria para esta orden");
    } catch (const std::exception& error) {
        ambcp::complain(error.what());
    }
    return ExitCode::failed;
}

} // namespace

int main(int argc, char** argv) {
    fillStandardFiles();
    std::signal(SIGPIPE, SIG_IGN);
    dbase::setNoticeHandler([](const std::string& text) { ambcp::complain(text); });
    std::signal(SIGXFSZ, SIG_IGN); // an output file that must not grow further ends in an error
    ambcp::Command command;
    CLI::App app({}, "ambcp");
    ambcp::defineCommands(app, command);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success)) {
            return app.exit(error);
        }
        ambcp::complain(ambcp::describeUsageError(error, app));
        return ExitCode::failed;
    }
    return run(command);
}
