// The progress line on the terminal.
#include "tools/progress.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <utility>

#include <unistd.h>

#include "dbase/system/counted.h"

namespace ambcp {

namespace {

/// Minutes and seconds, or hours before them.
std::string durationText(std::chrono::seconds duration) {
    const auto seconds = duration.count();
    std::array<char, 32> text{};
    if (seconds < 3600) {
        std::snprintf(text.data(), text.size(), "%lld:%02lld", static_cast<long long>(seconds / 60),
                      static_cast<long long>(seconds % 60));
    } else {
        std::snprintf(text.data(), text.size(), "%lld:%02lld:%02lld", static_cast<long long>(seconds / 3600),
                      static_cast<long long>(seconds / 60 % 60), static_cast<long long>(seconds % 60));
    }
    return text.data();
}

std::string rowsText(std::uint64_t rows) { return dbase::counted(rows, "fila", "filas"); }

} // namespace

std::string workText(std::uint64_t rows, double share, std::chrono::milliseconds elapsed) {
    constexpr std::size_t width = 20;
    std::string text;
    share = std::isfinite(share) ? std::min(share, 1.0) : -1;
    if (share >= 0) {
        const auto filled = static_cast<std::size_t>(share * static_cast<double>(width));
        const std::string percent = std::to_string(static_cast<int>(share * 100));
        text = '[' + std::string(filled, '#') + std::string(width - filled, '-') + "] " +
               std::string(3 - std::min<std::size_t>(percent.size(), 3), ' ') + percent + " %  ";
    }
    text += rowsText(rows);
    const double seconds = static_cast<double>(elapsed.count()) / 1000;
    if (seconds > 0) {
        text += "  " + std::to_string(static_cast<std::uint64_t>(static_cast<double>(rows) / seconds)) + "/s";
    }
    constexpr double foreseeable = 360'000; // a hundred hours, in seconds
    if (const double left = seconds / share * (1 - share); share > 0 && seconds >= 1 && left < foreseeable) {
        text += "  quedan " + durationText(std::chrono::seconds(static_cast<std::int64_t>(left + 0.5)));
    }
    return text;
}

ProgressLine::ProgressLine(std::string task)
    : task_(std::move(task)), isOn_(isatty(STDERR_FILENO) == 1), start_(std::chrono::steady_clock::now()),
      next_(start_) {}

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
        show(rowsText(count));
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

void ProgressLine::work(std::uint64_t rows, double share) {
    if (isOn_) {
        show(workText(rows, share,
                      std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() -
                                                                            start_)));
    }
}

} // namespace ambcp
