// The seed of a test that works at random.
#pragma once

#include <cstdlib>
#include <iostream>
#include <random>
#include <string>

namespace ambrel::test {

/// Another one in every run, and the same throughout it. It is printed; the environment variable AMBREL_SEED
/// gives it back to repeat the run.
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
