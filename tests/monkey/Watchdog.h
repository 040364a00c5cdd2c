// Ends a program whose event loop stands still.
#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <string>
#include <thread>

namespace monkey {

/// As long as it exists, the thread that made it has to call alive() now and then. If it does not, what was
/// on the screen and done last is printed, and the program is aborted in that thread, so that the stack is
/// seen.
class Watchdog {
public:
    explicit Watchdog(std::chrono::seconds patience);
    ~Watchdog();
    Watchdog(const Watchdog&) = delete;
    Watchdog& operator=(const Watchdog&) = delete;

    void alive(const std::string& screen);
    void did(std::string action);
    /// What was on the screen, and the last actions, the latest at the end.
    [[nodiscard]] std::string story();

private:
    void watch();

    const std::chrono::seconds patience_;
    const pthread_t watched_ = ::pthread_self();
    std::mutex mutex_;
    std::condition_variable ends_;
    bool isOver_ = false;
    std::chrono::steady_clock::time_point heard_ = std::chrono::steady_clock::now();
    std::string screen_;
    std::deque<std::string> actions_;
    std::thread thread_; // last: it uses all of the above
};

} // namespace monkey
