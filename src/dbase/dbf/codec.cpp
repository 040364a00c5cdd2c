// Decodes column values from the bytes of a record and encodes them into it.
#include "dbase/dbf/codec.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>
#include <limits>

#include "dbase/dbf/decimal.h"

namespace dbase {

namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }

std::string_view withoutBlanks(std::string_view text) {
    while (!text.empty() && text.front() == ' ') {
        text.remove_prefix(1);
    }
    while (!text.empty() && text.back() == ' ') {
        text.remove_suffix(1);
    }
    return text;
}

std::string_view withoutPadding(std::string_view raw) {
    constexpr std::string_view blanks = "        ";
    std::size_t size = raw.size();
    while (size >= blanks.size() &&
           std::memcmp(raw.data() + size - blanks.size(), blanks.data(), blanks.size()) == 0) {
        size -= blanks.size(); // a word at a time
    }
    while (size > 0 && raw[size - 1] == ' ') {
        --size;
    }
    return raw.substr(0, size);
}

/// Removes a sign from the front; true for minus.
bool takeSign(std::string_view& text) {
    if (text.empty() || (text.front() != '-' && text.front() != '+')) {
        return false;
    }
    const bool isMinus = text.front() == '-';
    text.remove_prefix(1);
    return isMinus;
}

/// Days of the civil calendar, Gregorian throughout.
constexpr int daysInMonth(int year, int month) {
    constexpr std::array<int, 12> days{31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    const bool isLeap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
    return month == 2 && isLeap ? 29 : days[static_cast<std::size_t>(month - 1)];
}

constexpr JulianDay unixEpoch = 2440588;
constexpr int daysPerEra = 146097; // 400 years
constexpr JulianDay firstOfMarch0 = unixEpoch - 719468;

/// Counts years from March, so that the leap day is the last of its year.
constexpr JulianDay toJulian(int year, int month, int day) {
    const int marchYear = month <= 2 ? year - 1 : year;
    const int era = marchYear / 400; // never negative: years start at 1
    const int yearOfEra = marchYear - era * 400;
    const int dayOfYear = (153 * (month > 2 ? month - 3 : month + 9) + 2) / 5 + day - 1;
    const int dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
    return era * daysPerEra + dayOfEra + firstOfMarch0;
}

constexpr JulianDay firstDay = toJulian(1, 1, 1);
constexpr JulianDay lastDay = toJulian(9999, 12, 31);
static_assert(toJulian(1970, 1, 1) == 2440588 && toJulian(2024, 1, 1) == 2460311 &&
              toJulian(1900, 1, 1) == 2415021);

/// Writes a fixed number of decimal digits.
void writeDigits(char* to, int count, int value) {
    for (int i = count - 1; i >= 0; --i, value /= 10) {
        to[i] = static_cast<char>('0' + value % 10);
    }
}

} // namespace

std::string_view decodeText(std::string_view raw) {
    if (raw.empty()) {
        return raw;
    }
    raw = withoutPadding(raw); // first, as most of a wide column is padding
    const void* const end = std::memchr(raw.data(), 0, raw.size());
    if (end == nullptr) {
        return raw;
    }
    return withoutPadding(
        raw.substr(0, static_cast<std::size_t>(static_cast<const char*>(end) - raw.data())));
}

std::optional<double> decodeNumber(std::string_view raw) {
    std::string_view text = withoutBlanks(raw);
    const bool isNegative = takeSign(text);
    std::uint64_t mantissa = 0; // the first 18 digits
    std::size_t digits = 0, decimals = 0;
    bool hasPoint = false;
    for (const char c : text) {
        if (c == '.' && !hasPoint) {
            hasPoint = true;
        } else if (isDigit(c)) {
            if (++digits <= 18) {
                mantissa = mantissa * 10 + static_cast<std::uint64_t>(c - '0');
            }
            decimals += hasPoint ? 1 : 0;
        } else {
            return std::nullopt;
        }
    }
    if (digits == 0) {
        return std::nullopt;
    }

    double value = 0;
    if (digits <= 15) { // both operands are exact as doubles, so the quotient is correctly rounded
        constexpr std::array<double, 16> powers{1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
        value = static_cast<double>(mantissa) / powers[decimals];
    } else if (std::from_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed).ec !=
               std::errc()) {
        return std::nullopt;
    }
    return isNegative && value != 0 ? -value : value;
}

std::optional<std::int64_t> decodeInteger(std::string_view raw) {
    std::string_view text = withoutBlanks(raw);
    const bool isNegative = takeSign(text);
    constexpr std::uint64_t limit = std::numeric_limits<std::int64_t>::max();
    std::uint64_t value = 0;
    std::size_t at = 0;
    for (; at < text.size() && isDigit(text[at]); ++at) {
        if (value > limit / 10) {
            return std::nullopt;
        }
        value = value * 10 + static_cast<std::uint64_t>(text[at] - '0');
    }
    if (value > limit + (isNegative ? 1 : 0)) {
        return std::nullopt;
    }
    std::size_t digits = at;
    if (at < text.size() && text[at] == '.') {
        for (++at; at < text.size() && text[at] == '0'; ++at) {
            ++digits;
        }
    }
    if (at < text.size() || digits == 0) {
        return std::nullopt;
    }
    return static_cast<std::int64_t>(isNegative ? 0 - value : value);
}

std::optional<bool> decodeLogical(std::string_view raw) {
    if (raw.empty()) {
        return std::nullopt;
    }
    switch (raw.front()) {
    case 'T':
    case 't':
    case 'Y':
    case 'y':
        return true;
    case 'F':
    case 'f':
    case 'N':
    case 'n':
        return false;
    default:
        return std::nullopt;
    }
}

std::optional<JulianDay> decodeDate(std::string_view raw) {
    if (raw.size() < 8 || !std::all_of(raw.begin(), raw.begin() + 8, isDigit)) {
        return std::nullopt;
    }
    const auto number = [raw](std::size_t from, std::size_t count) {
        int value = 0;
        for (const char c : raw.substr(from, count)) {
            value = value * 10 + (c - '0');
        }
        return value;
    };
    return julianDay(number(0, 4), number(4, 2), number(6, 2));
}

std::optional<JulianDay> julianDay(int year, int month, int day) {
    if (year < 1 || year > 9999 || month < 1 || month > 12 || day < 1 || day > daysInMonth(year, month)) {
        return std::nullopt;
    }
    return toJulian(year, month, day);
}

std::string encodeDate(JulianDay day) {
    std::string text(8, ' ');
    if (day < firstDay || day > lastDay) {
        return text;
    }
    const int shifted = day - firstOfMarch0;
    const int era = shifted / daysPerEra;
    const int dayOfEra = shifted - era * daysPerEra;
    const int yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    const int dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const int shiftedMonth = (5 * dayOfYear + 2) / 153;
    const int month = shiftedMonth < 10 ? shiftedMonth + 3 : shiftedMonth - 9;
    writeDigits(text.data(), 4, yearOfEra + era * 400 + (month <= 2 ? 1 : 0));
    writeDigits(text.data() + 4, 2, month);
    writeDigits(text.data() + 6, 2, dayOfYear - (153 * shiftedMonth + 2) / 5 + 1);
    return text;
}

void encodeText(std::span<char> raw, std::string_view text) {
    const std::size_t size = std::min(raw.size(), text.size());
    std::copy_n(text.begin(), size, raw.begin());
    std::fill(raw.begin() + static_cast<std::ptrdiff_t>(size), raw.end(), ' ');
}

bool encodeNumber(std::span<char> raw, double value, int decimals) {
    return formatFixed(raw, value, decimals);
}

bool encodeInteger(std::span<char> raw, std::int64_t value, int decimals) {
    std::array<char, 20> digits; // at most a sign and 19 digits
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr;
    const auto length = static_cast<std::size_t>(end - digits.data());
    const std::size_t tail = decimals > 0 ? 1 + static_cast<std::size_t>(decimals) : 0;
    if (length + tail > raw.size()) {
        return false;
    }
    auto to = std::fill_n(raw.begin(), raw.size() - length - tail, ' ');
    to = std::copy_n(digits.begin(), length, to);
    if (tail > 0) {
        *to++ = '.';
        std::fill(to, raw.end(), '0');
    }
    return true;
}

void encodeLogical(std::span<char> raw, bool value) {
    encodeBlank(raw);
    if (!raw.empty()) {
        raw.front() = value ? 'T' : 'F';
    }
}

void encodeBlank(std::span<char> raw) { std::fill(raw.begin(), raw.end(), ' '); }

} // namespace dbase
