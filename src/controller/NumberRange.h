// House numbers and the ranges that a street stretch covers.
#pragma once

namespace ambrel {

/// First and last house number, inclusive.
struct NumberRange {
    int first = 0;
    int last = 0;

    /// Whether the range contains the number.
    [[nodiscard]] bool holds(int number) const { return first <= number && number <= last; }
};

/// The two sides of a stretch.
struct StretchRanges {
    NumberRange odd;
    NumberRange even;

    /// Whether the number's side contains it; 0 is even.
    [[nodiscard]] bool hold(int number) const { return (number % 2 != 0 ? odd : even).holds(number); }
};

} // namespace ambrel
