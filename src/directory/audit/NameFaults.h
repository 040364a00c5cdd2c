// What can be wrong with the writing of a name. Texts in Windows-1252.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace ambrel::directory {

[[nodiscard]] bool hasSmallLetters(std::string_view name);
[[nodiscard]] std::string inCapitals(std::string_view name);

/// A blank at the start, or several in a row.
[[nodiscard]] bool hasNeedlessBlanks(std::string_view name);
[[nodiscard]] std::string withoutNeedlessBlanks(std::string_view name);

/// Letters that another system's code page has made of Spanish ones, such as "CASTA\AR".
struct BrokenLetters {
    std::string likely;   // the name as it probably was; empty if it cannot be guessed
    bool wasUtf8 = false; // nothing else gives these letters, and capitals would spoil them for good
    bool isWhole = true;  // nothing of UTF-8 is left in the likely name
    [[nodiscard]] bool isCertain() const { return wasUtf8 && !likely.empty() && isWhole; }
};
[[nodiscard]] std::optional<BrokenLetters> findBrokenLetters(std::string_view name);

/// Round or square ones that are not closed, or not opened.
[[nodiscard]] bool hasOpenBracket(std::string_view name);

} // namespace ambrel::directory
