// Work in a thread of its own.
#pragma once

#include <atomic>
#include <thread>
#include <utility>

namespace host {

/// The last member of what it works on: it waits for the thread before the rest is destroyed.
class BackgroundRun {
public:
    BackgroundRun() = default;
    /// Cancels, and waits until the thread has ended.
    ~BackgroundRun() {
        cancel();
        if (thread_.joinable()) {
            thread_.join();
        }
    }
    BackgroundRun(const BackgroundRun&) = delete;
    BackgroundRun& operator=(const BackgroundRun&) = delete;

    template<class Body>
    void start(Body body) {
        thread_ = std::thread(std::move(body));
    }
    /// Asks the work to end; it looks at isCancelled() now and then.
    void cancel() { isCancelled_ = true; }
    [[nodiscard]] bool isCancelled() const { return isCancelled_; }

private:
    std::atomic<bool> isCancelled_ = false;
    std::thread thread_;
};

} // namespace host
