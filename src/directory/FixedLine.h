// A line of fixed columns, as the office's layouts count them.
#pragma once

#include <algorithm>
#include <optional>
#include <string_view>

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
    /// The number in columns of at most nine digits; null if one is not a digit.
    [[nodiscard]] std::optional<unsigned> number(std::size_t first, std::size_t last) const {
        if (line_.size() < last) {
            return std::nullopt;
        }
        unsigned value = 0;
        bool isNumber = true;
        for (std::size_t i = first - 1; i < last; ++i) {
            const unsigned digit = static_cast<unsigned char>(line_[i]) - unsigned{'0'};
            isNumber = isNumber && digit <= 9;
            value = value * 10 + digit;
        }
        return isNumber ? std::optional(value) : std::nullopt;
    }

private:
    static bool isDigit(char sign) { return sign >= '0' && sign <= '9'; }

    std::string_view line_;
};

} // namespace ambrel::directory
