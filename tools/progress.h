// A line on the terminal that shows the progress of a long task.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace ambcp {

/// How far a task is that takes some time: "[#####-----]  50 %  12000 filas  4000/s  quedan 0:03". `share`:
/// of 1, which a file that grows may pass; negative or no finite number if not known, and then neither bar
/// nor the time left is shown.
[[nodiscard]] std::string workText(std::uint64_t rows, double share, std::chrono::milliseconds elapsed);

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
    /// Rows, share, rate and time left, since the line was made.
    void work(std::uint64_t rows, double share);

private:
    void show(const std::string& state);

    std::string task_;
    bool isOn_;
    std::chrono::steady_clock::time_point start_, next_;
    bool isShown_ = false;
};

} // namespace ambcp
