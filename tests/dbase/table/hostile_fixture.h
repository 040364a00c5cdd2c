// The table that the tests of malformed files damage, and the expected outcomes.
#pragma once

#include <gtest/gtest.h>

#include "dbase/mdx/index_layout.h"
#include "dbase/support/StoredTable.h"
#include "dbase/system/bytes.h"
#include "dbase/system/error.h"
#include "dbase/table/table.h"
#include "support/TemporaryFolder.h"

namespace dbase::test {

/// A small sound table, whose bytes are to be damaged.
class HostileTest : public ::testing::Test {
protected:
    static constexpr std::size_t firstTag = 4 * pageBytes; // the header of tag NOMBRE
    static constexpr std::size_t firstEntry = mdx::tagTable + mdx::tagEntrySize;
    static constexpr std::size_t itemLength = 104; // of tag NOMBRE: a number and a key of 100
    static constexpr std::size_t headerLength = 97, recordLength = 107, blockLength = 1024;

    HostileTest() {
        const MemoryTable stored(
            {.name = "HOSTIL",
             .columns = {{"NOMBRE", ColumnType::Character, 100, 0, 0}, {"NUM", ColumnType::Numeric, 6, 0, 0}},
             .tags = {{.name = "NOMBRE", .expression = "NOMBRE"}, {.name = "NUM", .expression = "NUM"}}});
        {
            const auto opened = stored.open();
            for (int i = 0; i < 60; ++i) {
                opened->append(
                    makeRecord(opened->schema(), {"CALLE " + std::to_string(100 + i), std::to_string(i)}));
            }
        }
        table = stored.records->bytes;
        index = stored.index->bytes;
    }

    [[nodiscard]] std::string path() const { return folder / "HOSTIL.DBF"; }
    [[nodiscard]] std::string indexPath() const { return folder / "HOSTIL.MDX"; }
    [[nodiscard]] std::size_t blockAt(std::uint32_t page) const { return std::size_t{page} * pageBytes; }
    [[nodiscard]] std::uint32_t root() const { return load32(index.data() + firstTag); }
    [[nodiscard]] std::uint32_t leaf(std::size_t i) const {
        return load32(index.data() + blockAt(root()) + mdx::items + i * itemLength);
    }

    /// Runs every operation that reads.
    static void use(Table& opened) {
        for (const std::string& tag : opened.tagNames()) {
            (void)order(opened, tag);
            (void)orderBackwards(opened, tag);
            (void)seek(opened, tag, std::string(opened.findTag(tag)->keyLength, '5'));
        }
        for (RecordNumber number = 1; number <= opened.records().recordCount(); ++number) {
            (void)storedRecord(opened, number);
        }
    }

    void putOnDisk() const {
        writeFile(path(), table);
        writeFile(indexPath(), index);
    }
    void expectUnchanged() const {
        EXPECT_EQ(readFile(path()), table);
        EXPECT_EQ(readFile(indexPath()), index);
    }
    void expectRefused(ErrorCode code, const std::string& file, const std::string& part = {}) const {
        putOnDisk();
        const Error error = errorOf([&] { use(*Table::open(path())); });
        EXPECT_EQ(error.code(), code) << error.what();
        EXPECT_EQ(error.file(), file);
        EXPECT_NE(std::string(error.what()).find(part), std::string::npos) << error.what();
        expectUnchanged();
        EXPECT_NE(findings(path()), "") << "the full check must see it too";
        expectUnchanged();
    }
    void expectBadTable(const std::string& part = {}) const {
        expectRefused(ErrorCode::BadTable, path(), part);
    }
    void expectBadIndex(const std::string& part = {}) const {
        expectRefused(ErrorCode::BadIndex, indexPath(), part);
    }

    Bytes table, index;
    TemporaryFolder folder;
};

} // namespace dbase::test
