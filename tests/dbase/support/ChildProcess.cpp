#include "ChildProcess.h"

#include <array>
#include <csignal>
#include <exception>
#include <stdexcept>

#include <sys/wait.h>
#include <unistd.h>

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

int ChildProcess::join() {
    close(toChild_);
    int status = 0;
    waitpid(pid_, &status, 0);
    close(toParent_);
    pid_ = 0;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

} // namespace dbase::test
