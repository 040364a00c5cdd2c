// A table of ten rows that is loaded into.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "dbase/mdx/index_layout.h"
#include "dbase/support/StoredTable.h"
#include "dbase/system/bytes.h"
#include "dbase/table/bulk_loader.h"
#include "dbase/table/table.h"
#include "dbase/table/table_definition.h"
#include "support/TemporaryFolder.h"

namespace dbase::test {

class BulkLoadTest : public ::testing::Test {
protected:
    explicit BulkLoadTest(std::vector<TagDefinition> tags = {{.name = "NOMBRE", .expression = "NOMBRE"},
                                                             {.name = "NUM", .expression = "NUM"}}) {
        createTable(folder_.path(), {.name = "CARGA",
                                     .columns = {{"NOMBRE", ColumnType::Character, 60, 0, 0},
                                                 {"NUM", ColumnType::Numeric, 6, 0, 0}},
                                     .tags = std::move(tags)});
        const auto table = Table::open(path());
        for (int i = 0; i < 10; ++i) {
            table->append(row(table->schema(), i));
        }
    }

    [[nodiscard]] std::string path() const { return folder_ / "CARGA.DBF"; }
    [[nodiscard]] std::string indexPath() const { return folder_ / "CARGA.MDX"; }
    /// The index without its session, which is another one with each journal.
    [[nodiscard]] Bytes indexBytes() const {
        Bytes bytes = readFile(indexPath());
        store64(bytes.data() + mdx::stamp + mdx::stampSession, 0);
        return bytes;
    }
    static Bytes row(const Schema& schema, int i) {
        return makeRecord(schema, {"CALLE " + std::to_string(i * 7919 % 10007), std::to_string(i)});
    }
    static void add(BulkLoader& loader, int from, int to) {
        for (int i = from; i < to; ++i) {
            loader.add(row(loader.schema(), i));
        }
    }
    void expectRows(RecordNumber rows) const {
        const auto table = Table::open(path());
        EXPECT_EQ(table->records().recordCount(), rows);
        for (RecordNumber number = 1; number <= rows; number += 97) {
            EXPECT_EQ(storedRecord(*table, number), row(table->schema(), static_cast<int>(number - 1)))
                << number;
        }
    }
    void expectSound() const { EXPECT_EQ(findings(path()), ""); }
    /// Whatever became of the load, the table is sound; the next program to open it may have to recover it.
    void TearDown() override {
        if (isChecked_) {
            (void)Table::open(path());
            expectSound();
        }
    }

    TemporaryFolder folder_;
    bool isChecked_ = true;
};

} // namespace dbase::test
