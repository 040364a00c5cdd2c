// House numbers and the ranges that a street stretch covers.
#pragma once

namespace ambrel {

/// First and last house number, inclusive.
struct NumberRange {
    int first = 0;
    int last = 0;

    /// Whether the range contains the number.
    [[nodiscard]] bool holds(int number) const { return first <= number && number <= last; }
    bool operator==(const NumberRange&) const = default;
};

/// The two sides of a stretch.
struct StretchRanges {
    NumberRange odd;
    NumberRange even;

    /// Whether the number's side contains it; 0 is even.
    [[nodiscard]] bool hold(int number) const { return (number % 2 != 0 ? odd : even).holds(number); }
    bool operator==(const StretchRanges&) const = default;
};

/// A street from end to end: the ranges of a new one. Its last numbers stand for "to the end".
inline constexpr StretchRanges wholeStreet{.odd = {1, 9999}, .even = {2, 9998}};

} // namespace ambrel
