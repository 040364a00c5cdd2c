// Names of the office in the width that the tables have for them.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
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
    NamesInWidth(const NamesInWidth&) = delete;
    NamesInWidth& operator=(const NamesInWidth&) = delete;

    void clear();
    /// `key`: what the office calls it; up to five digits. The name must stay where it is.
    void add(std::uint32_t key, std::string_view name);
    /// Settles all names, in the order of their addition. Those that had to be shortened live until the next
    /// change of this object.
    [[nodiscard]] std::span<const std::string_view> settle();

private:
    struct Shortened {
        std::size_t place; // among all names
        std::uint32_t key;
        std::string_view whole;
        std::string name;
    };
    void keepApart();

    std::size_t width_;
    std::vector<std::string_view> names_;
    std::vector<Shortened> shortened_;
};

} // namespace ambrel::directory
