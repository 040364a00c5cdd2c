// Every byte of a table's header and of its index is damaged in turn; the table is then opened, walked,
// searched, changed and checked.
#include <gtest/gtest.h>

#include "dbase/mdx/index_layout.h"
#include "dbase/support/StoredTable.h"
#include "dbase/system/error.h"
#include "dbase/table/table.h"
#include "support/TemporaryFolder.h"

namespace {

using namespace dbase;
using namespace dbase::test;

/// Small blocks and long keys: three levels in few bytes.
MemoryTable sample() {
    MemoryTable stored(
        {.name = "BYTES",
         .columns = {{"NOMBRE", ColumnType::Character, 100, 0, 0}, {"NUM", ColumnType::Numeric, 4, 0, 0}},
         .tags = {{.name = "NOMBRE", .expression = "NOMBRE"},
                  {.name = "NUM", .expression = "NUM", .descending = true}}},
        1);
    const auto table = stored.open();
    for (int i = 0; i < 12; ++i) {
        table->append(makeRecord(table->schema(),
                                 {std::string(1, static_cast<char>('A' + i * 7 % 12)), std::to_string(i)}));
    }
    for (RecordNumber number = 1; number <= 3; ++number) { // leaves blocks on the free list
        table->overwrite(number, storedRecord(*table, number), makeRecord(table->schema(), {"Z", "5"}));
    }
    return stored;
}

void use(Table& table) {
    for (const std::string& tag : table.tagNames()) {
        const std::vector<RecordNumber> numbers = order(table, tag);
        (void)orderBackwards(table, tag);
        (void)seek(table, tag, std::string(table.findTag(tag)->keyLength, 'C'));
        for (const RecordNumber number : numbers) {
            (void)storedRecord(table, number);
        }
    }
}

void change(Table& table) {
    if (table.isReadOnly()) {
        return;
    }
    Bytes record(table.schema().recordLength, ' ');
    table.append(record);
    table.overwrite(1, storedRecord(table, 1), record);
    table.erase(2, storedRecord(table, 2));
}

/// Runs the operation to its end or to a refusal that names a file.
void expectEnd(const std::function<void()>& operation) {
    try {
        operation();
    } catch (const Error& error) {
        EXPECT_FALSE(error.file().empty()) << error.what();
    }
}

class SpoiltByteTest : public ::testing::TestWithParam<unsigned char> {
protected:
    static char spoil(char byte) {
        return GetParam() < 2 ? static_cast<char>(-GetParam()) : static_cast<char>(byte ^ GetParam());
    }

    static void tryOut(const Bytes& table, const Bytes& index) {
        const MemoryTable readOnly(table, index), writable(table, index);
        expectEnd([&] { use(*readOnly.openReadOnly()); });
        EXPECT_EQ(readOnly.records->bytes, table);
        EXPECT_EQ(readOnly.index->bytes, index);
        expectEnd([&] { change(*writable.open()); });
    }
};

TEST_P(SpoiltByteTest, OfTheTableHeaderIsRefusedOrHarmless) {
    const MemoryTable stored = sample();
    Bytes table = stored.records->bytes;
    for (std::size_t at = 0; at < 97; ++at) {
        SCOPED_TRACE(at);
        const char whole = table[at];
        table[at] = spoil(whole);
        tryOut(table, stored.index->bytes);
        table[at] = whole;
    }
}

TEST_P(SpoiltByteTest, OfTheIndexIsRefusedOrHarmless) {
    const MemoryTable stored = sample();
    Bytes index = stored.index->bytes;
    for (std::size_t at = 0; at < index.size(); ++at) {
        if (at == mdx::tagTable + 4 * mdx::tagEntrySize) {
            at = mdx::headBytes; // skips entries that no tag uses
        }
        SCOPED_TRACE(at);
        const char whole = index[at];
        index[at] = spoil(whole);
        if (index[at] != whole) {
            tryOut(stored.records->bytes, index);
        }
        index[at] = whole;
    }
}

TEST_P(SpoiltByteTest, OfAnyFileIsCheckedToTheEnd) {
    const MemoryTable stored = sample();
    const TemporaryFolder folder;
    const std::string path = folder / "BYTES.DBF", indexPath = folder / "BYTES.MDX";
    writeFile(path, stored.records->bytes);
    writeFile(indexPath, stored.index->bytes);
    ASSERT_EQ(findings(path), "");
    for (const auto& [file, bytes] :
         {std::pair(path, Bytes(stored.records->bytes.begin(), stored.records->bytes.begin() + 97)),
          std::pair(indexPath, stored.index->bytes)}) {
        const auto spoilt = openFile(file, OpenMode::ReadWrite);
        for (std::size_t at = 0; at < bytes.size(); at += 3) {
            const char whole = bytes[at], changed = spoil(whole);
            spoilt->write(at, std::span<const char>(&changed, 1));
            EXPECT_NO_THROW((void)checkTable(path)) << file << ' ' << at;
            spoilt->write(at, std::span<const char>(&whole, 1));
        }
    }
    EXPECT_EQ(findings(path), "");
}

INSTANTIATE_TEST_SUITE_P(Bytes, SpoiltByteTest, ::testing::Values(0x00, 0x01, 0x55), [](const auto& test) {
    return std::string(test.param == 0 ? "Zero" : test.param == 1 ? "AllOnes" : "OtherBits");
});

} // namespace
