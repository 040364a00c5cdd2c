// A line on the terminal that shows the progress of a long task.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace ambcp {

/// Writes to standard error, and only when that is a terminal. Its destruction removes the line.
class ProgressLine {
public:
    explicit ProgressLine(std::string task);
    ~ProgressLine();
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    /// Updates no more often than a person can read.
    void rows(std::uint64_t count);
    void share(double done);
    void share(std::uint64_t done, std::uint64_t total);

private:
    void show(const std::string& state);

    std::string task_;
    bool isOn_;
    std::chrono::steady_clock::time_point next_;
    bool isShown_ = false;
};

} // namespace ambcp
