// Names of the office in the width that the tables have for them.
#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace ambrel::directory {

/// A name in capitals without accents or needless blanks, as the tables have them: Ñ, Ç and Ü stay.
/// Windows-1252.
[[nodiscard]] std::string plainCapitals(std::string_view name);

/// Gives the names of one municipality their place in a narrower column. A name that fits stays as it is. Of
/// a longer one, words get their usual short forms, from the last word to the first, until it fits; if it
/// still does not, it is cut, and brackets are closed. Where the outcome is the name of another, each of
/// those that were shortened ends in its key instead, so that no two different names become one.
class NamesInWidth {
public:
    explicit NamesInWidth(std::size_t width) : width_(width) {}

    void clear();
    /// `key`: what the office calls it; up to five digits.
    void add(std::uint32_t key, std::string name);
    /// Settles all names, in the order of their addition, and forgets them.
    [[nodiscard]] std::vector<std::string> settle();

private:
    std::size_t width_;
    std::vector<std::pair<std::uint32_t, std::string>> names_;
};

} // namespace ambrel::directory
