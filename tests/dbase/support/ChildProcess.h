// Work done by another process of the same test.
#pragma once

#include <functional>
#include <string>

#include <sys/types.h>

namespace dbase::test {

/// Runs a function in a forked process, which ends with its result as exit code (200 when it raises). The two
/// wait for each other's word, so that no test has to sleep. Errors of every word: std::runtime_error when
/// the other one is gone.
class ChildProcess {
public:
    /// What the child may do: tell() the parent, await() its answer.
    class Link {
    public:
        Link(int in, int out) : in_(in), out_(out) {}
        void tell() const;
        void await() const;
        /// A text without zero bytes, which receive() gives there.
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
    /// Waits for the end, and lets nobody wait for a word any more; the exit code, or minus the signal that
    /// ended it.
    int join();

private:
    pid_t pid_ = 0;
    int toChild_ = -1, toParent_ = -1;
};

} // namespace dbase::test
