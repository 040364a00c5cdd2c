// Encodes numbers and days as keys, and compares keys whose order is not that of their bytes.
#include "dbase/mdx/key.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <limits>

#include "dbase/dbf/codepage.h"
#include "dbase/dbf/collation.h"
#include "dbase/dbf/decimal.h"

namespace dbase {

namespace {

constexpr int exponentBias = 0x34;
constexpr int largestExponent = 0xFF - exponentBias;
constexpr std::size_t digitsAt = 2;     // bytes 2 to 11 hold the digits
constexpr unsigned char signBit = 0x80; // in byte 1
constexpr double blankDate = 1e100;

unsigned char byteAt(std::string_view key, std::size_t at) { return static_cast<unsigned char>(key[at]); }

void encodeNumericKey(double value, std::span<char> key) {
    std::fill(key.begin(), key.end(), '\0');
    if (key.size() < numericKeyLength) {
        return;
    }
    Decimal number = toDecimal(value);
    if (std::isinf(value) || number.exponent > largestExponent) { // becomes the largest key of its sign
        number.isNegative = value < 0;
        number.exponent = largestExponent;
        number.digits.fill('9');
        number.count = number.digits.size();
    } else if (number.exponent < -exponentBias) {
        number = Decimal{};
    }
    key[0] = static_cast<char>(exponentBias + number.exponent);
    key[1] = static_cast<char>((number.isNegative ? signBit : 0) | (number.count << 2) | 1);
    for (std::size_t i = 0; i < number.count; ++i) {
        const int digit = number.digits[i] - '0';
        char& pair = key[digitsAt + i / 2];
        pair = static_cast<char>(pair | (i % 2 == 0 ? digit << 4 : digit));
    }
}

void encodeDateKey(double day, std::span<char> key) {
    std::fill(key.begin(), key.end(), '\0');
    const auto bits = std::bit_cast<std::uint64_t>(day);
    for (std::size_t i = 0; i < std::min(key.size(), dateKeyLength); ++i) {
        key[i] = static_cast<char>(bits >> (8 * i) & 0xFF);
    }
}

/// Blank dates come after all others, in whichever form they were written.
double dateOrder(std::string_view key) {
    std::uint64_t bits = 0;
    for (std::size_t i = 0; i < dateKeyLength; ++i) {
        bits |= static_cast<std::uint64_t>(byteAt(key, i)) << (8 * i);
    }
    const auto day = std::bit_cast<double>(bits);
    const bool isBlank = std::isnan(day) || day == 0 || day > 1e9;
    return isBlank ? std::numeric_limits<double>::infinity() : day;
}

int compareNumeric(std::string_view a, std::string_view b) {
    const bool isNegative = (byteAt(a, 1) & signBit) != 0;
    if (isNegative != ((byteAt(b, 1) & signBit) != 0)) {
        return isNegative ? -1 : 1;
    }
    int order = byteAt(a, 0) - byteAt(b, 0);
    if (order == 0) {
        order = a.substr(digitsAt, numericKeyLength - digitsAt)
                    .compare(b.substr(digitsAt, numericKeyLength - digitsAt));
    }
    return isNegative ? -order : order;
}

int compareWeights(std::string_view a, std::string_view b) {
    const auto& weights = collationWeights();
    const std::size_t size = std::min(a.size(), b.size());
    for (std::size_t i = 0; i < size; ++i) {
        if (a[i] != b[i]) {
            return weights[byteAt(a, i)] - weights[byteAt(b, i)];
        }
    }
    return 0;
}

} // namespace

void encodeKey(const Value& value, KeyType type, std::span<char> key) {
    switch (type) {
    case KeyType::Character:
        encodeText(key, value.text);
        break;
    case KeyType::Numeric:
        encodeNumericKey(value.hasValue ? value.number : 0, key);
        break;
    case KeyType::Date:
        encodeDateKey(value.hasValue ? static_cast<double>(value.day) : blankDate, key);
        break;
    }
}

double decodeNumericKey(std::string_view key) {
    if (key.size() < numericKeyLength) {
        return 0;
    }
    std::array<char, 40> text; // "0." 20 digits "e-52"
    char* to = text.data();
    *to++ = '0';
    *to++ = '.';
    for (std::size_t i = digitsAt; i < numericKeyLength; ++i) {
        for (const int digit : {byteAt(key, i) >> 4, byteAt(key, i) & 0x0F}) {
            *to++ = static_cast<char>('0' + std::min(digit, 9)); // keeps damaged nibbles digits
        }
    }
    *to++ = 'e';
    to = std::to_chars(to, text.data() + text.size(), byteAt(key, 0) - exponentBias).ptr;
    double value = 0;
    std::from_chars(text.data(), to, value);
    return (byteAt(key, 1) & signBit) != 0 ? -value : value;
}

int KeyOrder::compareOther(std::string_view a, std::string_view b) const {
    const std::size_t size = std::min(a.size(), b.size());
    if (type_ == KeyType::Character) {
        return compareWeights(a, b);
    }
    if (type_ == KeyType::Numeric && size >= numericKeyLength) {
        return compareNumeric(a, b);
    }
    if (type_ == KeyType::Date && size >= dateKeyLength) {
        const double left = dateOrder(a), right = dateOrder(b);
        return left < right ? -1 : left > right ? 1 : 0;
    }
    return compareBytes(a, b);
}

} // namespace dbase
