// A small table in memory that can be left in the middle of a change.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "dbase/mdx/index_layout.h"
#include "dbase/support/StoredTable.h"
#include "dbase/system/bytes.h"
#include "dbase/table/recovery.h"
#include "dbase/table/table.h"

namespace dbase::test {

class RecoveryTest : public ::testing::Test {
protected:
    RecoveryTest()
        : RecoveryTest({{.name = "NOMBRE", .expression = "NOMBRE"}, {.name = "NUM", .expression = "NUM"}}) {}
    explicit RecoveryTest(std::vector<TagDefinition> tags)
        : stored_({.name = "RECUPERA",
                   .columns = {{"NOMBRE", ColumnType::Character, 30, 0, 0},
                               {"NUM", ColumnType::Numeric, 6, 0, 0}},
                   .tags = std::move(tags)}) {
        const auto table = stored_.open();
        schema_ = table->schema();
        for (int i = 0; i < 100; ++i) {
            table->append(row(i));
        }
    }

    [[nodiscard]] Bytes row(int i) const {
        return makeRecord(schema_, {"CALLE " + std::to_string(1000 + i * 37 % 100), std::to_string(i)});
    }
    [[nodiscard]] Bytes& tableBytes() const { return stored_.records->bytes; }
    [[nodiscard]] Bytes& indexBytes() const { return stored_.index->bytes; }

    [[nodiscard]] UpdateStamp stamp() const {
        const char* at = indexBytes().data() + mdx::stamp;
        return {std::equal(at, at + 8, mdx::stampMagic), load32(at + 8) != 0, load32(at + 12),
                load64(at + 16)};
    }
    void setMark() const { store32(indexBytes().data() + mdx::stamp + 8, 1); }
    void removeStamp() const { std::fill_n(indexBytes().begin() + mdx::stamp, mdx::stampSize, '\0'); }
    [[nodiscard]] Journal journal() const {
        return {std::make_unique<MemoryJournal>(stored_.journal), schema_};
    }
    /// Leaves the state of a program of this boot that ended without leaving the table.
    void leaveJournal() const { static_cast<void>(begunJournal()); }
    /// One that belongs to the table.
    [[nodiscard]] Journal begunJournal() const {
        Journal begun = journal();
        TableFile records(std::make_unique<MemoryFile>(stored_.records));
        MemoryFile index(stored_.index);
        Recovery(records, &index, &begun).beginJournal();
        return begun;
    }
    /// Leaves the state of a writer that ended between its journal entry and the records.
    void dieIn(const RecordChange& change) const {
        Journal left = begunJournal();
        const std::uint64_t counter = stamp().counter + 1;
        store64(indexBytes().data() + mdx::stamp + 16, counter);
        setMark();
        left.add({counter, change.runs()}, true);
    }
    /// Swaps the keys of a leaf: wrong, and easily detected.
    void spoilTree() const {
        const std::size_t leaf = load32(indexBytes().data() + 4 * pageBytes + mdx::firstLeaf) * pageBytes;
        std::swap_ranges(indexBytes().begin() + static_cast<std::ptrdiff_t>(leaf + 8),
                         indexBytes().begin() + static_cast<std::ptrdiff_t>(leaf + 44),
                         indexBytes().begin() + static_cast<std::ptrdiff_t>(leaf + 8 + 36));
    }
    /// Appends a row as a program does that knows no index.
    void appendWithoutIndex(int i) const {
        const Bytes record = row(i);
        tableBytes().pop_back();
        tableBytes().insert(tableBytes().end(), record.begin(), record.end());
        tableBytes().push_back(0x1A);
        store32(tableBytes().data() + 4, load32(tableBytes().data() + 4) + 1);
    }

    void expectSound(RecordNumber rows) const {
        {
            const auto table = stored_.open();
            EXPECT_EQ(table->records().recordCount(), rows);
            for (const std::string& tag : table->tagNames()) {
                EXPECT_EQ(order(*table, tag).size(), rows) << tag;
            }
        }
        EXPECT_EQ(stored_.findings(), "");
    }

    MemoryTable stored_;
    Schema schema_;
};

} // namespace dbase::test
