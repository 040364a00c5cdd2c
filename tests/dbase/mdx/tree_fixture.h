// The one-column table whose tree the tree tests grow, and access to its blocks.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <numeric>
#include <string>
#include <vector>

#include "dbase/mdx/index_layout.h"
#include "dbase/mdx/tree_cursor.h"
#include "dbase/support/StoredTable.h"
#include "dbase/system/bytes.h"
#include "dbase/table/table.h"

namespace dbase::test {

/// A table of one column with one tag on it; the width decides how many keys a block holds.
class TreeTest : public ::testing::Test {
protected:
    void make(std::uint16_t width, TagDefinition tag = {.name = "K", .expression = "K"},
              unsigned blockPages = 2) {
        stored_ = std::make_unique<MemoryTable>(
            TableDefinition{
                .name = "ARBOL", .columns = {{"K", ColumnType::Character, width, 0, 0}}, .tags = {tag}},
            blockPages);
        table_ = stored_->open();
    }

    RecordNumber append(const std::string& key) {
        return table_->append(makeRecord(table_->schema(), {key}));
    }
    void setKey(RecordNumber number, const std::string& key) {
        table_->overwrite(number, storedRecord(*table_, number), makeRecord(table_->schema(), {key}));
    }
    static std::string numbered(int number) {
        const std::string digits = std::to_string(number);
        return std::string(5 - digits.size(), '0') + digits;
    }

    [[nodiscard]] const Tag& tag() const { return *table_->findTag("K"); }
    [[nodiscard]] TreeCursor cursor() const { return {*table_->index(), tag()}; }
    [[nodiscard]] std::size_t levels() const {
        TreeCursor at = cursor();
        at.first();
        return at.path().size();
    }
    [[nodiscard]] std::size_t indexSize() const { return stored_->index->bytes.size(); }
    [[nodiscard]] std::size_t leafCount() const {
        std::size_t leaves = 0;
        TreeCursor at = cursor();
        for (bool on = at.first(); on; on = at.nextLeaf()) {
            ++leaves;
        }
        return leaves;
    }
    static std::vector<RecordNumber> upTo(RecordNumber last) {
        std::vector<RecordNumber> numbers(last);
        std::iota(numbers.begin(), numbers.end(), RecordNumber{1});
        return numbers;
    }

    // Blocks as bytes, for trees that our own engine would not leave.
    [[nodiscard]] char* block(PageNumber page) const {
        return stored_->index->bytes.data() + std::size_t{page} * pageBytes;
    }
    /// The pages above the leaf of a key, root first, followed by that leaf.
    [[nodiscard]] std::vector<PageNumber> pagesTo(const std::string& key) const {
        TreeCursor at = cursor();
        at.seek(key);
        std::vector<PageNumber> pages;
        for (const TreeCursor::Level& level : at.path()) {
            pages.push_back(level.page);
        }
        return pages;
    }
    void emptyLeaf(PageNumber page) const { std::fill_n(block(page), table_->index()->blockSize(), '\0'); }
    [[nodiscard]] char* tagHeader() const { return block(tag().headerPage); }

    /// For a test whose tree no engine of ours would leave.
    void leaveUnchecked() { isChecked_ = false; }
    void TearDown() override {
        if (isChecked_ && stored_ != nullptr) {
            EXPECT_EQ(stored_->findings(), "");
        }
    }

    std::unique_ptr<MemoryTable> stored_;
    std::unique_ptr<Table> table_;

private:
    bool isChecked_ = true;
};

} // namespace dbase::test
