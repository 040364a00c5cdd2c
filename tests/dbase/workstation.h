// A second program at work on the same tables: a process of its own that runs steps one at a time.
#pragma once

#include <functional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <sys/wait.h>
#include <unistd.h>

#include "support/CoverageProfile.h"

namespace dbase {

/// Start it while this process has no table open: what is open is shared with the child, locks included. The
/// steps work on the child's own copy of everything that they refer to.
class Workstation {
public:
    explicit Workstation(std::vector<std::function<void()>> steps) {
        if (pipe(toChild_) != 0 || pipe(fromChild_) != 0) {
            throw std::runtime_error("no pipe");
        }
        child_ = fork();
        if (child_ < 0) {
            throw std::runtime_error("no process");
        }
        if (child_ == 0) {
            ::close(toChild_[1]);
            ::close(fromChild_[0]);
            serve(steps);
            ambrel::test::keepCoverage();
            _exit(0);
        }
        ::close(toChild_[0]);
        ::close(fromChild_[1]);
    }
    ~Workstation() {
        ::close(toChild_[1]);
        ::close(fromChild_[0]);
        waitpid(child_, nullptr, 0);
    }
    Workstation(const Workstation&) = delete;
    Workstation& operator=(const Workstation&) = delete;

    /// Runs the next step there; the text of what it threw, or nothing.
    std::string step() {
        const char go = 1;
        if (::write(toChild_[1], &go, 1) != 1) {
            return "the other process is gone";
        }
        std::string text;
        for (char c = 0;;) {
            if (::read(fromChild_[0], &c, 1) != 1) {
                return "the other process is gone: " + text;
            }
            if (c == '\0') {
                return text;
            }
            text += c;
        }
    }

private:
    void serve(const std::vector<std::function<void()>>& steps) {
        for (const auto& step : steps) {
            char go = 0;
            if (::read(toChild_[0], &go, 1) != 1) {
                return;
            }
            std::string answer;
            try {
                step();
            } catch (const std::exception& error) {
                answer = error.what();
            }
            if (::write(fromChild_[1], answer.c_str(), answer.size() + 1) < 0) {
                return;
            }
        }
        char end = 0; // stays, with what it has open and locked, until the other end is closed
        static_cast<void>(!::read(toChild_[0], &end, 1));
    }

    int toChild_[2] = {-1, -1}, fromChild_[2] = {-1, -1};
    pid_t child_ = -1;
};

/// For the steps, whose failures only travel as exceptions.
inline void require(bool condition, const char* what) {
    if (!condition) {
        throw std::runtime_error(what);
    }
}

} // namespace dbase
