// Waits for the next sign of life.
#include "monkey/Watchdog.h"

#include <csignal>
#include <cstdio>

namespace monkey {
namespace {

constexpr std::size_t remembered = 60;

} // namespace

Watchdog::Watchdog(std::chrono::seconds patience) : patience_(patience), thread_([this] { watch(); }) {}

Watchdog::~Watchdog() {
    {
        const std::scoped_lock lock(mutex_);
        isOver_ = true;
    }
    ends_.notify_one();
    thread_.join();
}

void Watchdog::alive(const std::string& screen) {
    const std::scoped_lock lock(mutex_);
    heard_ = std::chrono::steady_clock::now();
    screen_ = screen;
}

void Watchdog::did(std::string action) {
    const std::scoped_lock lock(mutex_);
    actions_.push_back(std::move(action));
    if (actions_.size() > remembered) {
        actions_.pop_front();
    }
}

std::string Watchdog::story() {
    const std::scoped_lock lock(mutex_);
    std::string story = "on the screen: " + screen_ + "\ndone last:\n";
    for (const std::string& action : actions_) {
        story += "  " + action + '\n';
    }
    return story;
}

void Watchdog::watch() {
    std::unique_lock lock(mutex_);
    while (!isOver_) {
        ends_.wait_for(lock, std::chrono::seconds(1));
        if (!isOver_ && std::chrono::steady_clock::now() - heard_ > patience_) {
            lock.unlock();
            std::fprintf(stderr, "The event loop has stood still for %lld seconds.\n%s",
                         static_cast<long long>(patience_.count()), story().c_str());
            ::pthread_kill(watched_, SIGABRT);
            return;
        }
    }
}

} // namespace monkey
