// Reading a house number as people write it.
#pragma once

#include <string_view>

namespace ambrel {

/// What stands where a house number is written.
struct HouseNumber {
    enum class Kind {
        None,   // nothing, or that there is none: "", "S/N"
        Known,  // a number, whatever follows it
        Unclear // something that is not a house number
    };
    Kind kind = Kind::None;
    int value = 0; // 1 to 9999 where known

    [[nodiscard]] bool isKnown() const { return kind == Kind::Known; }
    friend bool operator==(const HouseNumber&, const HouseNumber&) = default;
};

/// The number that a text begins with, after "nº" and its like. A letter, a second word, the end of a range
/// and the floor may follow: "12 BIS", "12B", "12-14", "nº 12" and "12, 3º" are all number 12. Ordinals
/// ("3º"), fractions ("12.5") and kilometres are no house numbers. Text in Windows-1252, letter case ignored.
[[nodiscard]] HouseNumber readHouseNumber(std::string_view text);

} // namespace ambrel
