// Random numbers that are the same on every machine.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace customers {

/// SplitMix64.
class Dice {
public:
    explicit Dice(std::uint64_t seed) : state_(seed) {}

    /// From 0 to `sides` - 1.
    [[nodiscard]] std::size_t roll(std::size_t sides) { return static_cast<std::size_t>(next() % sides); }
    [[nodiscard]] bool oneIn(std::size_t sides) { return roll(sides) == 0; }
    template<class Value>
    [[nodiscard]] const Value& among(const std::vector<Value>& values) {
        return values[roll(values.size())];
    }

private:
    std::uint64_t next() {
        state_ += 0x9E3779B97F4A7C15U;
        std::uint64_t mixed = state_;
        mixed = (mixed ^ (mixed >> 30)) * 0xBF58476D1CE4E5B9U;
        mixed = (mixed ^ (mixed >> 27)) * 0x94D049BB133111EBU;
        return mixed ^ (mixed >> 31);
    }

    std::uint64_t state_;
};

} // namespace customers
