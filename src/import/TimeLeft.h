// How long a run of many steps will still take.
#pragma once

#include <QString>
#include <chrono>

namespace ambrel {

/// Judges by the steps that are over.
class TimeLeft {
public:
    void addStep(std::chrono::milliseconds taken);
    /// In words, for the user; empty while nothing is known, and when no step is left.
    [[nodiscard]] QString text(int stepsLeft) const;

private:
    std::chrono::milliseconds taken_{0};
    int steps_ = 0;
};

} // namespace ambrel
