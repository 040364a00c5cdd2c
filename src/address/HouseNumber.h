// Reading a house number as people write it.
#pragma once

#include <string_view>

namespace ambrel {

/// A house number as read from a text.
struct HouseNumber {
    enum class Kind {
        None,   // nothing, or a statement that there is none: "", "S/N"
        Known,  // a number, whatever follows it
        Unclear // something that is not a house number
    };
    Kind kind = Kind::None;
    int value = 0; // 1 to 9999 if known

    [[nodiscard]] bool isKnown() const { return kind == Kind::Known; }
    friend bool operator==(const HouseNumber&, const HouseNumber&) = default;
};

/// The number at the start of a text, after "nº" and the like. A letter, a second word, the end of a range
/// and the floor may follow: "12 BIS", "12B", "12-14", "nº 12" and "12, 3º" are all number 12. Ordinals
/// ("3º"), fractions ("12.5"), kilometres, digits with a letter O among them ("1O") and signs that say
/// nothing
/// ("?") are not house numbers. Text in Windows-1252, letter case ignored.
[[nodiscard]] HouseNumber readHouseNumber(std::string_view text);

} // namespace ambrel
