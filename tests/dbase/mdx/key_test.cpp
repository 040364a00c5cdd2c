// The bytes and the order of keys.
#include "dbase/mdx/key.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>
#include <random>

#include "dbase/dbf/codec.h"

namespace {

using namespace dbase;

std::string numericKey(double number) {
    Value value;
    value.type = ValueType::Number;
    value.number = number;
    std::string key(numericKeyLength, '#');
    encodeKey(value, KeyType::Numeric, key);
    return key;
}

std::string dateKey(std::optional<JulianDay> day) {
    Value value;
    value.type = ValueType::Date;
    value.hasValue = day.has_value();
    value.day = day.value_or(0);
    std::string key(dateKeyLength, '#');
    encodeKey(value, KeyType::Date, key);
    return key;
}

std::string textKey(std::string text, std::size_t length) {
    Value value;
    value.text = std::move(text);
    std::string key(length, '#');
    encodeKey(value, KeyType::Character, key);
    return key;
}

std::string rawDateKey(double day) {
    std::string key(dateKeyLength, '\0');
    const auto bits = std::bit_cast<std::uint64_t>(day);
    for (std::size_t i = 0; i < key.size(); ++i) {
        key[i] = static_cast<char>(bits >> (8 * i));
    }
    return key;
}

std::string hex(std::string_view bytes) {
    std::string text;
    for (const char c : bytes) {
        constexpr std::string_view digits = "0123456789ABCDEF";
        text += digits[static_cast<unsigned char>(c) >> 4];
        text += digits[static_cast<unsigned char>(c) & 15];
    }
    return text;
}

int sign(int order) { return (order > 0) - (order < 0); }

const KeyOrder numericOrder(KeyType::Numeric, false, false);
const KeyOrder dateOrder(KeyType::Date, false, false);
const KeyOrder byteOrder(KeyType::Character, false, false);
const KeyOrder weightOrder(KeyType::Character, true, false);

TEST(Key, NumericKeysHaveTheBytesOfTheFormat) {
    EXPECT_EQ(hex(numericKey(0)), "340100000000000000000000");
    EXPECT_EQ(hex(numericKey(-0.0)), "340100000000000000000000");
    EXPECT_EQ(hex(numericKey(2)), "350520000000000000000000");
    EXPECT_EQ(hex(numericKey(15)), "360915000000000000000000");
    EXPECT_EQ(hex(numericKey(-37)), "368937000000000000000000");
    EXPECT_EQ(hex(numericKey(-2.75)), "358D27500000000000000000");
    EXPECT_EQ(hex(numericKey(20.5)), "360D20500000000000000000");
    EXPECT_EQ(hex(numericKey(0.5)), "340550000000000000000000");
    EXPECT_EQ(hex(numericKey(1000)), "380510000000000000000000");
}

TEST(Key, NumericKeyIsExactForDecimalTexts) {
    EXPECT_EQ(hex(numericKey(0.1)), "340510000000000000000000");
    EXPECT_EQ(hex(numericKey(948.47)), "371594847000000000000000");
    EXPECT_EQ(hex(numericKey(decodeNumber("123456789012345").value())), "433D12345678901234500000");
}

TEST(Key, BlankNumberIsZero) {
    Value value;
    value.type = ValueType::Number;
    value.hasValue = false;
    value.number = 7;
    std::string key(numericKeyLength, '#');
    encodeKey(value, KeyType::Numeric, key);
    EXPECT_EQ(key, numericKey(0));
}

TEST(Key, NumericKeyReadsBack) {
    for (const double number :
         {0.0, 1.0, -1.0, 0.01, -2.75, 948.4, 1e-40, -123456.789, 1e20, 9.87654321e50}) {
        EXPECT_EQ(decodeNumericKey(numericKey(number)), number);
    }
    std::mt19937_64 random(3);
    for (int round = 0; round < 20000; ++round) {
        const double number = static_cast<double>(static_cast<std::int64_t>(random() >> 12)) / 1000 - 1e12;
        EXPECT_EQ(decodeNumericKey(numericKey(number)), number);
    }
}

TEST(Key, DigitCountOfOtherProgramsDoesNotMatter) {
    std::string even = numericKey(2);
    even[1] = 0x09; // another program counts two digits
    EXPECT_EQ(decodeNumericKey(even), 2);
    EXPECT_EQ(numericOrder.compare(even, numericKey(2)), 0);
    EXPECT_LT(numericOrder.compare(even, numericKey(3)), 0);
}

TEST(Key, NumbersBeyondTheFormatStayTheLargest) {
    const double huge = 1e300;
    EXPECT_GT(numericOrder.compare(numericKey(huge), numericKey(1e200)), 0);
    EXPECT_LT(numericOrder.compare(numericKey(-huge), numericKey(-1e200)), 0);
    EXPECT_EQ(numericKey(std::numeric_limits<double>::infinity()), numericKey(huge));
    EXPECT_EQ(numericKey(1e-300), numericKey(0));
    EXPECT_EQ(numericKey(std::numeric_limits<double>::quiet_NaN()), numericKey(0));
}

TEST(Key, DamagedNumericKeyIsReadWithoutHarm) {
    EXPECT_TRUE(std::isfinite(decodeNumericKey(std::string(numericKeyLength, '\xFF'))));
    EXPECT_EQ(decodeNumericKey("short"), 0);
}

TEST(KeyOrder, IntegersStandInNumericOrder) {
    std::mt19937 random(5);
    for (int round = 0; round < 50000; ++round) {
        const int a = static_cast<int>(random() % 200001) - 100000;
        const int b = static_cast<int>(random() % 201) - 100;
        EXPECT_EQ(sign(numericOrder.compare(numericKey(a), numericKey(b))), sign(a - b)) << a << " " << b;
    }
}

TEST(KeyOrder, DecimalsFromATenthOnAndNegativesStandInNumericOrder) {
    const std::vector<double> ascending{-1000, -948.47, -948.4, -1, -0.5, -0.1, -0.01, 0,
                                        0.1,   0.11,    0.5,    1,  9.99, 10,   948.4, 948.47};
    for (std::size_t i = 1; i < ascending.size(); ++i) {
        EXPECT_LT(numericOrder.compare(numericKey(ascending[i - 1]), numericKey(ascending[i])), 0)
            << ascending[i];
    }
}

// Deliberate: the order that the readers and writers of these files share.
TEST(KeyOrder, PositiveNumbersBelowATenthStandBeforeZero) {
    EXPECT_LT(numericOrder.compare(numericKey(0.01), numericKey(0)), 0);
    EXPECT_LT(numericOrder.compare(numericKey(0.099), numericKey(0)), 0);
    EXPECT_GT(numericOrder.compare(numericKey(0.1), numericKey(0)), 0);
    EXPECT_GT(numericOrder.compare(numericKey(0.01), numericKey(-0.01)), 0);
}

TEST(KeyOrder, IsAStrictWeakOrderForEveryKindOfKey) {
    std::mt19937 random(9);
    const auto bytes = [&random](std::size_t size) {
        std::string key(size, '\0');
        for (char& c : key) {
            c = static_cast<char>(random() % 4 == 0 ? random() : random() % 3);
        }
        return key;
    };
    for (const bool descending : {false, true}) {
        for (const auto& [order, size] :
             {std::pair{KeyOrder(KeyType::Numeric, false, descending), numericKeyLength},
              std::pair{KeyOrder(KeyType::Date, false, descending), dateKeyLength},
              std::pair{KeyOrder(KeyType::Character, false, descending), std::size_t{3}},
              std::pair{KeyOrder(KeyType::Character, true, descending), std::size_t{3}}}) {
            for (int round = 0; round < 5000; ++round) {
                const std::string a = bytes(size), b = bytes(size), c = bytes(size);
                const int ab = sign(order.compare(a, b)), bc = sign(order.compare(b, c)),
                          ac = sign(order.compare(a, c));
                EXPECT_EQ(order.compare(a, a), 0);
                EXPECT_EQ(ab, -sign(order.compare(b, a)));
                if (ab == bc || ab == 0 || bc == 0) {
                    EXPECT_EQ(ac, ab != 0 ? ab : bc);
                }
            }
        }
    }
}

TEST(KeyOrder, DescendingTurnsTheOrderRound) {
    EXPECT_GT(KeyOrder(KeyType::Character, false, true).compare("A", "B"), 0);
    EXPECT_LT(KeyOrder(KeyType::Numeric, false, true).compare(numericKey(5), numericKey(3)), 0);
}

TEST(KeyOrder, CharacterKeysStandInByteOrder) {
    EXPECT_LT(byteOrder.compare("NZ", "\xD1"
                                      "A"),
              0);
    EXPECT_LT(byteOrder.compare("Z", "a"), 0);
    EXPECT_LT(byteOrder.compare("z", "\xC1"), 0);
}

TEST(KeyOrder, CollatedKeysStandInTheOrderOfTheirWeights) {
    EXPECT_LT(weightOrder.compare("n", "N"), 0);
    EXPECT_LT(weightOrder.compare("NZ", "\xD1"
                                        "A"),
              0);
    EXPECT_LT(weightOrder.compare("\xD1", "O"), 0);
    EXPECT_LT(weightOrder.compare("A", "\xC1"), 0);
    EXPECT_LT(weightOrder.compare("\xC1", "B"), 0);
    EXPECT_EQ(weightOrder.compare("ABC", "ABC"), 0);
}

TEST(KeyOrder, KeysOfDifferentLengthAreComparedOnTheShorterOne) {
    EXPECT_EQ(byteOrder.compare("28", "28079"), 0);
    EXPECT_EQ(weightOrder.compare("28079", "28"), 0);
    EXPECT_EQ(byteOrder.compare("", "28079"), 0);
    EXPECT_LT(byteOrder.compare("27", "28079"), 0);
}

TEST(Key, CharacterKeyIsPaddedOrCut) {
    EXPECT_EQ(textKey("AB", 4), "AB  ");
    EXPECT_EQ(textKey("ABCDEF", 4), "ABCD");
    EXPECT_EQ(textKey("", 2), "  ");
}

TEST(Key, DateKeyIsALittleEndianDouble) {
    EXPECT_EQ(dateKey(2460311), rawDateKey(2460311.0));
    EXPECT_EQ(hex(dateKey(2460311)), "000000804BC54241");
    EXPECT_EQ(dateKey(std::nullopt), rawDateKey(1e100));
}

TEST(KeyOrder, DatesStandInCalendarOrder) {
    EXPECT_LT(dateOrder.compare(dateKey(2440588), dateKey(2460311)), 0);
    EXPECT_EQ(dateOrder.compare(dateKey(2440588), dateKey(2440588)), 0);
}

TEST(KeyOrder, BlankDatesOfEveryWriterStandLastAndTogether) {
    const double blanks[] = {0, 2.1474835648e10, 1e100, std::numeric_limits<double>::infinity(),
                             std::numeric_limits<double>::quiet_NaN()};
    for (const double blank : blanks) {
        EXPECT_GT(dateOrder.compare(rawDateKey(blank), dateKey(5373484)), 0); // 9999-12-31
        EXPECT_EQ(dateOrder.compare(rawDateKey(blank), dateKey(std::nullopt)), 0);
    }
}

} // namespace
