// Estimates the remaining time of a run of many steps.
#pragma once

#include <QString>
#include <chrono>

namespace ambrel {

/// Estimates from the steps already done.
class TimeLeft {
public:
    void addStep(std::chrono::milliseconds taken);
    /// In words, for the user; empty before the first step and after the last one.
    [[nodiscard]] QString text(int stepsLeft) const;

private:
    std::chrono::milliseconds taken_{0};
    int steps_ = 0;
};

} // namespace ambrel
