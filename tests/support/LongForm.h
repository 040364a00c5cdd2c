// The two sizes of an endurance test: one for every run, and one for scripts/resistance.
#pragma once

#include <cstdlib>

namespace ambrel::test {

/// The second size when the environment variable AMBREL_LONG_FORM is set, else the first.
[[nodiscard]] inline int longForm(int everyRun, int longRun) {
    return std::getenv("AMBREL_LONG_FORM") != nullptr ? longRun : everyRun;
}

} // namespace ambrel::test
