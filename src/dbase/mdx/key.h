// Index keys: the encoding of values, and the order of a tag's keys.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "dbase/expression/expression.h"

namespace dbase {

enum class KeyType : char { Character = 'C', Numeric = 'N', Date = 'D' };

inline constexpr std::size_t maxKeyLength = 100;
inline constexpr std::size_t numericKeyLength = 12; // exponent, sign and digit count, 20 BCD digits
inline constexpr std::size_t dateKeyLength = 8;     // IEEE double, Julian day

/// Writes the key of a value: a text cut or padded with blanks to the length, a number as 20 BCD digits with
/// the exact digit count, a day as a little-endian double (1e100 for a blank date).
void encodeKey(const Value& value, KeyType type, std::span<char> key);

/// The number in a numeric key; the digit count in byte 1 is ignored.
[[nodiscard]] double decodeNumericKey(std::string_view key);

/// The order of one tag's keys, descending included. Cheap to copy.
class KeyOrder {
public:
    KeyOrder() = default;
    KeyOrder(KeyType type, bool collated, bool descending)
        : type_(type), collated_(collated), descending_(descending) {}

    /// Negative, 0 or positive if `a` comes before, equals or comes after `b` in the tag. Character keys of
    /// different lengths are compared on the shorter length.
    [[nodiscard]] int compare(std::string_view a, std::string_view b) const {
        const int order = type_ == KeyType::Character && !collated_ ? compareBytes(a, b) : compareOther(a, b);
        return descending_ ? -order : order;
    }

    [[nodiscard]] bool isCollated() const { return collated_; }
    [[nodiscard]] bool isDescending() const { return descending_; }
    [[nodiscard]] KeyType type() const { return type_; }

private:
    static int compareBytes(std::string_view a, std::string_view b) {
        const std::size_t n = a.size() < b.size() ? a.size() : b.size();
        return std::char_traits<char>::compare(a.data(), b.data(), n);
    }
    [[nodiscard]] int compareOther(std::string_view a, std::string_view b) const;

    KeyType type_ = KeyType::Character;
    bool collated_ = false;
    bool descending_ = false;
};

} // namespace dbase
