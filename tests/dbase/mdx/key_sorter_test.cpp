// Sorts more keys than fit into memory.
#include "dbase/mdx/key_sorter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "dbase/dbf/codepage.h"
#include "dbase/expression/expression.h"
#include "dbase/support/ChildProcess.h"
#include "dbase/system/error.h"
#include "support/FileSizeLimit.h"

namespace {

using namespace dbase;
using namespace dbase::test;

using Entry = std::pair<std::string, RecordNumber>;
constexpr std::size_t plenty = std::size_t{1} << 20;

std::vector<Entry> sorted(KeyOrder order, const std::vector<Entry>& entries, std::size_t memory) {
    const std::size_t length = entries.empty() ? 1 : entries.front().first.size();
    KeySorter sorter(order, length, entries.size(), memory);
    for (const auto& [key, record] : entries) {
        sorter.add(key, record);
    }
    std::vector<Entry> delivered;
    sorter.deliver([&](std::string_view key, RecordNumber record) { delivered.emplace_back(key, record); });
    return delivered;
}

std::vector<Entry> expected(KeyOrder order, std::vector<Entry> entries) {
    std::stable_sort(entries.begin(), entries.end(), [&](const Entry& a, const Entry& b) {
        const int compared = order.compare(a.first, b.first);
        return compared != 0 ? compared < 0 : a.second < b.second;
    });
    return entries;
}

/// Few letters and short keys, so that many are equal.
std::vector<Entry> anyTexts(std::size_t count, std::size_t length) {
    std::mt19937 random(7);
    std::vector<Entry> entries;
    for (std::size_t i = 0; i < count; ++i) {
        std::string key(length, ' ');
        for (char& c : key) {
            c = "aA\xE1\xF1\xD1zZ "[random() % 8];
        }
        entries.emplace_back(key, static_cast<RecordNumber>(i + 1));
    }
    std::shuffle(entries.begin(), entries.end(), random);
    return entries;
}

std::vector<Entry> anyValues(KeyType type, std::size_t length) {
    std::mt19937 random(7);
    std::vector<Entry> entries;
    for (RecordNumber i = 1; i <= 500; ++i) {
        Value value;
        value.type = type == KeyType::Numeric ? ValueType::Number : ValueType::Date;
        value.number = static_cast<int>(random() % 400) / 8.0 - 20;
        value.day = 2440000 + static_cast<JulianDay>(random() % 100);
        value.hasValue = random() % 10 != 0;
        std::string key(length, '\0');
        encodeKey(value, type, key);
        entries.emplace_back(key, i);
    }
    return entries;
}

void expectSorted(KeyOrder order, const std::vector<Entry>& entries) {
    const std::vector<Entry> right = expected(order, entries);
    EXPECT_EQ(sorted(order, entries, plenty), right);
    EXPECT_EQ(sorted(order, entries, entries.size() * 4), right) << "through temporary files";
}

TEST(KeySorterTest, NothingGivesNothing) {
    EXPECT_TRUE(sorted(KeyOrder(KeyType::Character, false, false), {}, plenty).empty());
}

TEST(KeySorterTest, SortsTextByBytes) {
    for (const std::size_t length : {1U, 3U, 8U, 9U, 20U, 100U}) {
        expectSorted(KeyOrder(KeyType::Character, false, false), anyTexts(600, length));
    }
}
TEST(KeySorterTest, SortsTextsThatBeginAlike) {
    for (const std::size_t alike : {7U, 8U, 9U, 24U, 60U}) {
        std::vector<Entry> entries = anyTexts(600, 5);
        for (Entry& entry : entries) {
            entry.first = std::string(alike, 'M') + entry.first + "CALLE MAYOR DE ABAJO";
        }
        expectSorted(KeyOrder(KeyType::Character, false, false), entries);
    }
}
// On two cores, where there are as many.
TEST(KeySorterTest, SortsALargeTablesKeys) {
    for (const std::size_t length : {3U, 12U}) {
        const KeyOrder order(KeyType::Character, false, false);
        const std::vector<Entry> entries = anyTexts(120'000, length);
        EXPECT_EQ(sorted(order, entries, std::size_t{8} << 20), expected(order, entries));
    }
}
TEST(KeySorterTest, SortsALargeTablesKeysThatAreAllEqual) {
    const KeyOrder order(KeyType::Character, false, false);
    std::vector<Entry> entries;
    for (RecordNumber number = 60'000; number > 0; --number) {
        entries.emplace_back("28001", number);
    }
    EXPECT_EQ(sorted(order, entries, std::size_t{8} << 20), expected(order, entries));
}
TEST(KeySorterTest, SortsTextDescending) {
    for (const std::size_t length : {1U, 20U}) {
        expectSorted(KeyOrder(KeyType::Character, false, true), anyTexts(600, length));
    }
}
TEST(KeySorterTest, SortsTextByWeights) {
    expectSorted(KeyOrder(KeyType::Character, true, false), anyTexts(600, 4));
    expectSorted(KeyOrder(KeyType::Character, true, true), anyTexts(600, 4));
}
TEST(KeySorterTest, SortsNumbers) {
    const std::vector<Entry> entries = anyValues(KeyType::Numeric, numericKeyLength);
    expectSorted(KeyOrder(KeyType::Numeric, false, false), entries);
    expectSorted(KeyOrder(KeyType::Numeric, false, true), entries);
}
TEST(KeySorterTest, SortsDatesBlankOnesLast) {
    const std::vector<Entry> entries = anyValues(KeyType::Date, dateKeyLength);
    expectSorted(KeyOrder(KeyType::Date, false, false), entries);
    expectSorted(KeyOrder(KeyType::Date, false, true), entries);
}

TEST(KeySorterTest, EqualKeysComeByRecordNumber) {
    std::vector<Entry> entries;
    for (RecordNumber i = 300; i > 0; --i) {
        entries.emplace_back("IGUAL", i);
    }
    for (const bool isDescending : {true, false}) {
        const std::vector<Entry> result =
            sorted(KeyOrder(KeyType::Character, false, isDescending), entries, 400);
        ASSERT_EQ(result.size(), 300U);
        for (RecordNumber i = 0; i < 300; ++i) {
            EXPECT_EQ(result[i].second, i + 1);
        }
    }
}

TEST(KeySorterTest, NoRoomForTheTemporaryFilesIsReported) {
    ChildProcess child([](const ChildProcess::Link&) {
        const ambrel::test::FileSizeLimit limit(4096);
        try {
            (void)sorted(KeyOrder(KeyType::Character, false, false), anyTexts(6000, 20), 60000);
        } catch (const Error& error) {
            return error.code() == ErrorCode::DiskFull ? 0 : 1;
        }
        return 2;
    });
    EXPECT_EQ(child.join(), 0);
}

} // namespace
