// Work done by another process of the same test.
#pragma once

#include <functional>

#include <sys/types.h>

namespace dbase::test {

/// Runs a function in a forked process, which ends with its result as exit code (200 when it raises). The two
/// talk through signal bytes, so that no test has to sleep.
class ChildProcess {
public:
    /// What the child may do: tell() the parent, await() its answer.
    class Link {
    public:
        Link(int in, int out) : in_(in), out_(out) {}
        void tell() const;
        void await() const;

    private:
        int in_, out_;
    };

    explicit ChildProcess(const std::function<int(const Link&)>& work);
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    void tell() const { Link(toParent_, toChild_).tell(); }
    void await() const { Link(toParent_, toChild_).await(); }
    /// kill -9.
    void kill() const;
    [[nodiscard]] bool hasEnded() const;
    /// Waits for the end; the exit code, or minus the signal that ended it.
    int join();

private:
    pid_t pid_ = 0;
    int toChild_ = -1, toParent_ = -1;
};

} // namespace dbase::test
