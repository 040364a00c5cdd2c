#include "ChildProcess.h"

#include <array>
#include <csignal>
#include <exception>
#include <stdexcept>

#include <sys/wait.h>
#include <unistd.h>

#include "support/CoverageProfile.h"

namespace dbase::test {

void ChildProcess::Link::tell() const {
    const char byte = 1;
    if (write(out_, &byte, 1) != 1)
        throw std::runtime_error("the other process is gone");
}

void ChildProcess::Link::await() const {
    char byte = 0;
    if (read(in_, &byte, 1) != 1)
        throw std::runtime_error("the other process is gone");
}

ChildProcess::ChildProcess(const std::function<int(const Link&)>& work) {
    std::signal(SIGPIPE, SIG_IGN); // a child that is gone shall be an exception
    std::array<int, 2> down{}, up{};
    if (pipe(down.data()) != 0 || pipe(up.data()) != 0)
        throw std::runtime_error("no pipe");
    pid_ = fork();
    if (pid_ == 0) {
        close(down[1]);
        close(up[0]);
        int code = 200;
        try {
            code = work(Link(down[0], up[1]));
        } catch (const std::exception&) {
            code = 200;
        }
        ambrel::test::keepCoverage();
        _exit(code);
    }
    close(down[0]);
    close(up[1]);
    toChild_ = down[1];
    toParent_ = up[0];
}

ChildProcess::~ChildProcess() {
    if (pid_ > 0)
        join();
}

void ChildProcess::kill() const { ::kill(pid_, SIGKILL); }

bool ChildProcess::hasEnded() const {
    siginfo_t info{};
    return waitid(P_PID, static_cast<id_t>(pid_), &info, WEXITED | WNOHANG | WNOWAIT) != 0 ||
           info.si_pid != 0;
}

int ChildProcess::join() {
    close(toChild_);
    int status = 0;
    waitpid(pid_, &status, 0);
    close(toParent_);
    pid_ = 0;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

} // namespace dbase::test
