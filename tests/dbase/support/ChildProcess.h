// Work done by another process of the same test.
#pragma once

#include <functional>
#include <string>

#include <sys/types.h>

namespace dbase::test {

/// Runs a function in a forked process, whose exit code is its result (200 when it throws). The two
/// wait for each other's messages, so that no test has to sleep. Errors of every message: std::runtime_error
/// when the other process is gone.
class ChildProcess {
public:
    /// The child's end: tell() the parent, await() its answer.
    class Link {
    public:
        Link(int in, int out) : in_(in), out_(out) {}
        void tell() const;
        void await() const;
        /// Sends a text without zero bytes, which receive() returns there.
        void send(const std::string& text) const;
        [[nodiscard]] std::string receive() const;

    private:
        [[nodiscard]] char readByte() const;

        int in_, out_;
    };

    explicit ChildProcess(const std::function<int(const Link&)>& work);
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    void tell() const { Link(toParent_, toChild_).tell(); }
    void await() const { Link(toParent_, toChild_).await(); }
    [[nodiscard]] std::string receive() const { return Link(toParent_, toChild_).receive(); }
    /// kill -9.
    void kill() const;
    [[nodiscard]] bool hasEnded() const;
    /// Waits for the end, after which no message can be awaited; returns the exit code, or minus the signal
    /// that ended it.
    int join();

private:
    pid_t pid_ = 0;
    int toChild_ = -1, toParent_ = -1;
};

} // namespace dbase::test
