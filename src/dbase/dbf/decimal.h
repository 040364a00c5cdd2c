// Doubles as decimal digits: the fewest that read back as the same number, so that a typed 0.1 is written as
// 0.1.
#pragma once

#include <array>
#include <span>

namespace dbase {

/// value = ± 0.d1d2d3… x 10^exponent, d1 not 0. Zero, infinities and NaN have no digits.
struct Decimal {
    bool isNegative = false;
    int exponent = 0;
    std::size_t count = 0;
    std::array<char, 20> digits{}; // '0' to '9'
};

[[nodiscard]] Decimal toDecimal(double value);

/// Writes a number right-justified with `decimals` decimals, halves rounded away from zero; false, with
/// nothing written, if it does not fit or is not finite.
[[nodiscard]] bool formatFixed(std::span<char> out, double value, int decimals);

} // namespace dbase
