// Random numbers that are the same on every machine, as long as each expression rolls them once: which of its
// parts comes first is up to the compiler.
#pragma once

#include <cstdint>

namespace invented {

/// SplitMix64.
class Dice {
public:
    explicit Dice(std::uint64_t seed) : state_(seed) {}

    /// From 0 to `sides` - 1.
    [[nodiscard]] std::uint32_t roll(std::uint64_t sides) {
        return static_cast<std::uint32_t>(next() % sides);
    }
    [[nodiscard]] bool oneIn(std::uint64_t sides) { return roll(sides) == 0; }
    template<class List>
    [[nodiscard]] const auto& among(const List& list) {
        return list[roll(list.size())];
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

} // namespace invented
