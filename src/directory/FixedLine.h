// A line of fixed columns, as the office's layouts count them.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string_view>

#include "dbase/system/bytes.h"

namespace ambrel::directory {

/// Columns count from 1 and include both ends. A line that is too short counts as filled up with blanks.
class FixedLine {
public:
    explicit FixedLine(std::string_view line) : line_(line) {}

    /// The bytes of columns as they stand, as far as the line goes.
    [[nodiscard]] std::string_view raw(std::size_t first, std::size_t last) const {
        return first > line_.size() ? std::string_view() : line_.substr(first - 1, last - first + 1);
    }
    /// Without the blanks on either side.
    [[nodiscard]] std::string_view text(std::size_t first, std::size_t last) const {
        constexpr std::string_view blanks = "        "; // as wide columns mostly end in many
        std::string_view value = raw(first, last);
        while (value.ends_with(blanks)) {
            value.remove_suffix(blanks.size());
        }
        value.remove_prefix(std::min(value.find_first_not_of(' '), value.size()));
        return value.substr(0, value.find_last_not_of(' ') + 1);
    }
    /// The column's sign; blank where the line has ended.
    [[nodiscard]] char sign(std::size_t column) const {
        return column <= line_.size() ? line_[column - 1] : ' ';
    }
    /// Whether all columns are digits.
    [[nodiscard]] bool hasDigits(std::size_t first, std::size_t last) const {
        return line_.size() >= last && std::ranges::all_of(raw(first, last), isDigit);
    }
    /// The number in columns of at most nine digits; null if one is not a digit. Inline, as callers know
    /// which columns: nearly nothing is left to compute but the number.
    [[nodiscard, gnu::always_inline]] std::optional<unsigned> number(std::size_t first,
                                                                     std::size_t last) const {
        constexpr std::size_t most = sizeof(std::uint64_t); // at once
        if (line_.size() < last) {
            return std::nullopt;
        }
        const std::size_t count = last - first + 1, before = count > most ? count - most : 0;
        if (before == 0) {
            return valueOf(signs(first, last), count);
        }
        const std::optional<unsigned> begin = valueOf(signs(first, first + before - 1), before),
                                      end = valueOf(signs(last - most + 1, last), most);
        return begin && end ? std::optional(*begin * 100'000'000 + *end) : std::nullopt;
    }

private:
    static bool isDigit(char sign) { return sign >= '0' && sign <= '9'; }
    /// Up to eight columns that the line has, the first one in the lowest byte.
    [[nodiscard, gnu::always_inline]] std::uint64_t signs(std::size_t first, std::size_t last) const {
        constexpr std::size_t word = sizeof(std::uint64_t);
        const std::size_t unused = 8 * (word - (last - first + 1));
        if (last >= word) {
            return dbase::load64(line_.data() + last - word) >> unused;
        }
        if (line_.size() >= first - 1 + word) {
            return dbase::load64(line_.data() + first - 1) << unused >> unused;
        }
        std::array<char, word> copy{};
        std::memcpy(copy.data(), line_.data() + first - 1, last - first + 1);
        return dbase::load64(copy.data());
    }
    /// Of as many digits. Pairs of them become one number side by side, and then pairs of those.
    [[gnu::always_inline]] static std::optional<unsigned> valueOf(std::uint64_t signs, std::size_t count) {
        constexpr std::uint64_t zeros = 0x3030303030303030, highBits = 0x8080808080808080,
                                beyondNine = 0x7676767676767676; // brings ten and more to the high bit
        const std::size_t unused = 8 * (sizeof signs - count);
        std::uint64_t digits = (signs - (zeros >> unused)) << unused;
        if (((digits | (digits + beyondNine)) & highBits) != 0) {
            return std::nullopt;
        }
        digits = (digits * 10 + (digits >> 8)) & 0x00FF00FF00FF00FF;
        digits = (digits * 100 + (digits >> 16)) & 0x0000FFFF0000FFFF;
        return static_cast<unsigned>(digits * 10000 + (digits >> 32));
    }

    std::string_view line_;
};

} // namespace ambrel::directory
