// Converts a double to decimal digits, and rounds them to a fixed width.
#include "dbase/dbf/decimal.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string_view>

namespace dbase {

namespace {

/// Rounds to `keep` digits, halves away from zero.
void roundTo(Decimal& number, int keep) {
    if (keep < 0) {
        number.count = 0;
        return;
    }
    const auto kept = static_cast<std::size_t>(keep);
    if (kept >= number.count) {
        return;
    }
    bool carry = number.digits[kept] >= '5';
    number.count = kept;
    while (carry && number.count > 0) {
        char& last = number.digits[number.count - 1];
        carry = last == '9';
        if (carry) {
            --number.count; // nines become zeros, which are not stored
        } else {
            ++last;
        }
    }
    if (carry) {
        number.digits[0] = '1';
        number.count = 1;
        ++number.exponent;
    }
}

} // namespace

Decimal toDecimal(double value) {
    Decimal result;
    if (!std::isfinite(value) || value == 0) {
        return result;
    }
    result.isNegative = value < 0;
    std::array<char, 32> buffer; // "d.ddddddddddddddddde-308"
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), std::fabs(value),
                                   std::chars_format::scientific)
                         .ptr;
    const std::string_view text(buffer.data(), static_cast<std::size_t>(end - buffer.data()));
    const std::size_t mark = text.find('e');
    for (const char c : text.substr(0, mark)) {
        if (c != '.') {
            result.digits[result.count++] = c;
        }
    }
    while (result.count > 1 && result.digits[result.count - 1] == '0') {
        --result.count;
    }
    const char* exponent = text.data() + mark + 1;
    std::from_chars(*exponent == '+' ? exponent + 1 : exponent, end, result.exponent);
    ++result.exponent; // from d.ddd to 0.dddd
    return result;
}

bool formatFixed(std::span<char> out, double value, int decimals) {
    if (!std::isfinite(value) || decimals < 0) {
        return false;
    }
    Decimal number = toDecimal(value);
    roundTo(number, number.exponent + decimals);
    if (number.count == 0) {
        number = Decimal{};
    }

    const int whole = std::max(number.exponent, 1);
    const int length = (number.isNegative ? 1 : 0) + whole + (decimals > 0 ? 1 + decimals : 0);
    if (length > static_cast<int>(out.size())) {
        return false;
    }
    const auto digitAt = [&number](int power) { // the digit for 10^power
        const int index = number.exponent - 1 - power;
        return index >= 0 && index < static_cast<int>(number.count)
                   ? number.digits[static_cast<std::size_t>(index)]
                   : '0';
    };
    const std::size_t blanks = out.size() - static_cast<std::size_t>(length);
    std::fill_n(out.begin(), blanks, ' ');
    auto to = out.begin() + static_cast<std::ptrdiff_t>(blanks);
    if (number.isNegative) {
        *to++ = '-';
    }
    for (int power = whole - 1; power >= 0; --power) {
        *to++ = digitAt(power);
    }
    if (decimals > 0) {
        *to++ = '.';
    }
    for (int power = -1; power >= -decimals; --power) {
        *to++ = digitAt(power);
    }
    return true;
}

} // namespace dbase
