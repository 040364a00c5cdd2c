// Work done by another process of the same test.
#include "ChildProcess.h"

#include <array>
#include <csignal>
#include <exception>
#include <stdexcept>

#include <sys/wait.h>
#include <unistd.h>

#include "support/CoverageProfile.h"

namespace dbase::test {

namespace {

constexpr int raised = 200; // exit code of a child whose work throws

} // namespace

void ChildProcess::Link::tell() const { send({}); }

void ChildProcess::Link::await() const { static_cast<void>(readByte()); }

void ChildProcess::Link::send(const std::string& text) const {
    const auto size = static_cast<ssize_t>(text.size() + 1); // includes the end of the text
    if (write(out_, text.c_str(), text.size() + 1) != size) {
        throw std::runtime_error("the other process is gone");
    }
}

std::string ChildProcess::Link::receive() const {
    std::string text;
    for (char byte = readByte(); byte != '\0'; byte = readByte()) {
        text += byte;
    }
    return text;
}

char ChildProcess::Link::readByte() const {
    char byte = 0;
    if (read(in_, &byte, 1) != 1) {
        throw std::runtime_error("the other process is gone");
    }
    return byte;
}

ChildProcess::ChildProcess(const std::function<int(const Link&)>& work) {
    std::signal(SIGPIPE, SIG_IGN); // writing to a child that is gone must throw
    std::array<int, 2> down{}, up{};
    if (pipe(down.data()) != 0 || pipe(up.data()) != 0) {
        throw std::runtime_error("no pipe");
    }
    pid_ = fork();
    if (pid_ < 0) {
        throw std::runtime_error("no process");
    }
    if (pid_ == 0) {
        close(down[1]);
        close(up[0]);
        int code = raised;
        try {
            code = work(Link(down[0], up[1]));
        } catch (const std::exception&) { // the exit code reports it
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
    if (pid_ > 0) {
        join();
    }
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
