// The progress line on the terminal.
#include "tools/progress.h"

#include <cstdio>
#include <utility>

#include <unistd.h>

namespace ambcp {

ProgressLine::ProgressLine(std::string task)
    : task_(std::move(task)), isOn_(isatty(STDERR_FILENO) == 1), next_(std::chrono::steady_clock::now()) {}

ProgressLine::~ProgressLine() {
    if (isShown_) {
        std::fputs("\r\033[K", stderr);
    }
}

void ProgressLine::show(const std::string& state) {
    constexpr auto interval = std::chrono::milliseconds(100);
    const auto now = std::chrono::steady_clock::now();
    if (now < next_) {
        return;
    }
    next_ = now + interval;
    isShown_ = true;
    std::fprintf(stderr, "\r%s: %s\033[K", task_.c_str(), state.c_str());
    std::fflush(stderr);
}

void ProgressLine::rows(std::uint64_t count) {
    if (isOn_) {
        show(std::to_string(count) + " filas");
    }
}

void ProgressLine::share(double done) {
    if (isOn_) {
        show(std::to_string(static_cast<int>(done * 100)) + " %");
    }
}

void ProgressLine::share(std::uint64_t done, std::uint64_t total) {
    if (total > 0) {
        share(static_cast<double>(done) / static_cast<double>(total));
    }
}

} // namespace ambcp
