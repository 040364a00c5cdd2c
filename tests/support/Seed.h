// The seed of a random test.
#pragma once

#include <cstdlib>
#include <iostream>
#include <random>
#include <string>

namespace ambrel::test {

/// Different in every run, and the same throughout it. It is printed; the environment variable AMBREL_SEED
/// sets it to repeat the run.
[[nodiscard]] inline unsigned seedOfThisRun() {
    static const unsigned seed = [] {
        const char* const given = std::getenv("AMBREL_SEED");
        const unsigned chosen =
            given != nullptr ? static_cast<unsigned>(std::stoul(given)) : std::random_device()();
        std::cout << "AMBREL_SEED=" << chosen << '\n';
        return chosen;
    }();
    return seed;
}

} // namespace ambrel::test
