// Trees that our own engine would not leave: with empty leaves, separators after the last key, headers that
// name other ends, blocks that change under a cursor. Usable ones are used; others are refused.
#include <functional>

#include "dbase/mdx/tree_builder.h"
#include "dbase/system/file_pieces.h"
#include "tree_fixture.h"

namespace {

using namespace dbase;
using namespace dbase::test;

class ForeignTreeTest : public TreeTest {
protected:
    static constexpr std::size_t itemLength = 104; // a record or page number and a key of 100

    /// Four keys per block, rows with even numbers: 00000, 00002, …
    void grow(int rows) {
        make(100, {.name = "K", .expression = "K"}, 1);
        for (int i = 0; i < rows; ++i) {
            append(numbered(i * 2));
        }
    }
    [[nodiscard]] PageNumber leafOf(int number) const { return pagesTo(numbered(number)).back(); }
    /// Record numbers of a walk, whose cursor finds its ends in a file written by other programs.
    [[nodiscard]] std::vector<RecordNumber> walk(bool isForward) const {
        std::vector<RecordNumber> records;
        TreeCursor at = cursor();
        for (bool on = isForward ? at.first() : at.last(); on; on = isForward ? at.next() : at.prior()) {
            records.push_back(at.record());
        }
        return records;
    }
};

TEST_F(ForeignTreeTest, EmptyLeavesAreSteppedOverBothWays) {
    leaveUnchecked();
    grow(40);
    std::vector<RecordNumber> expected = upTo(40);
    for (const int number : {0, 30, 78}) { // the first leaf, one in the middle, the last one
        const PageNumber page = leafOf(number);
        const std::uint32_t count = load32(block(page));
        for (std::uint32_t i = 0; i < count; ++i) {
            std::erase(expected, load32(block(page) + mdx::items + i * itemLength));
        }
        emptyLeaf(page);
    }
    EXPECT_EQ(walk(true), expected);
    std::reverse(expected.begin(), expected.end());
    EXPECT_EQ(walk(false), expected);
    TreeCursor at = cursor();
    EXPECT_TRUE(at.seekShare(0.0));
    EXPECT_EQ(at.record(), expected.back()) << "behind the empty first leaf";
}

TEST_F(ForeignTreeTest, AnEmptyLeafTakesKeysAgain) {
    grow(12);
    const PageNumber page = leafOf(10);
    ASSERT_EQ(load32(block(page)), 4U);
    emptyLeaf(page); // as an engine leaves it that does not unlink leaves
    for (RecordNumber number = 5; number <= 8; ++number) {
        std::fill_n(stored_->records->bytes.begin() + table_->schema().headerLength +
                        (number - 1) * table_->schema().recordLength,
                    1, ' ');
    }
    table_->rebuildTags();
    EXPECT_EQ(walk(true), upTo(12));
    emptyLeaf(leafOf(10));
    append("00011");
    EXPECT_EQ(cursor().first(), true);
    EXPECT_EQ(seek(*table_, "K", "00011"), 13U);
    table_->rebuildTags();
}

// The separator may be beyond the last key below it: a key between them goes into the leaf before it.
TEST_F(ForeignTreeTest, AFullLeafWhoseSeparatorIsLargerSplitsInTheMiddleOfTheTree) {
    grow(40);
    const std::vector<PageNumber> pages = pagesTo(numbered(8));
    const PageNumber leaf = pages.back(), above = pages[pages.size() - 2];
    const std::uint32_t count = load32(block(leaf));
    ASSERT_EQ(count, 4U);
    const std::string last(block(leaf) + mdx::items + 3 * itemLength + 4, 5);
    char* const separator = std::search(block(above), block(above) + pageBytes, last.begin(), last.end());
    ASSERT_NE(separator, block(above) + pageBytes);
    separator[5] = '9'; // after the last key, before the next one
    EXPECT_EQ(stored_->findings(), "");
    append(last + "5");
    append(last + "6");
    const RecordNumber place = static_cast<RecordNumber>(std::stoi(last) / 2 + 1);
    std::vector<RecordNumber> expected = upTo(40);
    expected.insert(expected.begin() + place, {41, 42});
    EXPECT_EQ(walk(true), expected);
}

TEST_F(ForeignTreeTest, AHeaderThatNamesAnotherFirstLeafIsPutRightWhenThatLeafGoes) {
    grow(40);
    const PageNumber named = leafOf(30);
    store32(tagHeader() + mdx::firstLeaf, named);
    store32(tagHeader() + mdx::lastLeaf, named);
    const std::uint32_t count = load32(block(named));
    std::vector<RecordNumber> moved;
    for (std::uint32_t i = 0; i < count; ++i) {
        moved.push_back(load32(block(named) + mdx::items + i * itemLength));
    }
    for (const RecordNumber number : moved) {
        setKey(number, "88888");
    }
    const TreeRoot root = table_->index()->treeRoot(tag());
    EXPECT_NE(root.firstLeaf, named);
    EXPECT_NE(root.lastLeaf, named);
}

TEST_F(ForeignTreeTest, TheLastEntryOfATreeOfEmptyLeavesMayGo) {
    leaveUnchecked();
    grow(5); // two leaves
    ASSERT_EQ(levels(), 2U);
    const PageNumber first = leafOf(0), last = leafOf(8);
    ASSERT_NE(first, last);
    emptyLeaf(first);
    ASSERT_EQ(walk(true), std::vector<RecordNumber>{5});
    store32(tagHeader() + mdx::firstLeaf, first);
    store32(tagHeader() + mdx::lastLeaf, last);
    setKey(5, "00009");
    EXPECT_EQ(seek(*table_, "K", "00009"), 5U);
}

TEST_F(ForeignTreeTest, ALeafWhereABlockShouldBeIsRefusedWhenTheTreeShrinks) {
    leaveUnchecked();
    grow(60);
    ASSERT_GE(levels(), 3U);
    const PageNumber root = table_->index()->treeRoot(tag()).root;
    store32(block(root) + mdx::items + itemLength, leafOf(100)); // the second child of the root is a leaf now
    const Bytes table = stored_->records->bytes;
    ErrorCode raised = ErrorCode::BadState;
    for (RecordNumber number = 1; number <= 20 && raised == ErrorCode::BadState; ++number) {
        try {
            setKey(number, "99999");
        } catch (const Error& error) {
            raised = error.code();
            EXPECT_NE(std::string(error.what()).find("página intermedia"), std::string::npos) << error.what();
        }
    }
    EXPECT_EQ(raised, ErrorCode::BadIndex);
}

TEST_F(ForeignTreeTest, ABlockAboveWithALoneChildIsRefusedWhenTheTreeShrinks) {
    leaveUnchecked();
    make(100, {.name = "K", .expression = "K", .condition = "K<'5'"}); // nine keys per block
    for (int i = 0; i < 200; ++i) {
        append(numbered(i));
    }
    ASSERT_EQ(levels(), 3U);
    const PageNumber root = table_->index()->treeRoot(tag()).root;
    const PageNumber child = load32(block(root) + mdx::items);
    emptyLeaf(root);
    store32(block(root) + mdx::items, child); // one child and no separator
    RecordNumber number = 0;
    const Error error = errorOf([&] {
        while (number < 200) {
            setKey(++number, "9"); // removed from the tag
        }
    });
    EXPECT_EQ(error.code(), ErrorCode::BadIndex);
    EXPECT_NE(std::string(error.what()).find("una sola página"), std::string::npos) << error.what();
    EXPECT_GT(number, 9U) << "leaves go as long as the block below has others";
}

TEST_F(ForeignTreeTest, ATreeThatIsItsOwnChildIsRefusedAtAShareToo) {
    leaveUnchecked();
    grow(40);
    const PageNumber root = table_->index()->treeRoot(tag()).root;
    for (std::size_t i = 0; i <= load32(block(root)); ++i) {
        store32(block(root) + mdx::items + i * itemLength, root);
    }
    TreeCursor at = cursor();
    EXPECT_EQ(errorOf([&] { (void)at.seekShare(0.5); }).code(), ErrorCode::BadIndex);
}

// --- Blocks that change under a cursor, as may happen to a reader without a lock

TEST_F(ForeignTreeTest, ABlockThatShrankUnderACursorIsReportedOnTheWayBack) {
    leaveUnchecked();
    grow(40);
    TreeCursor at = cursor();
    ASSERT_TRUE(at.last());
    const PageNumber above = at.path()[at.path().size() - 2].page;
    ASSERT_GT(at.path()[at.path().size() - 2].slot, 0U);
    store32(block(above) + mdx::keyCount, 0);
    EXPECT_EQ(errorOf([&] {
                  while (at.prior()) {
                  }
              }).code(),
              ErrorCode::BadIndex);
}

TEST_F(ForeignTreeTest, ALeafThatShrankUnderACursorIsLeftOnTheWayBack) {
    leaveUnchecked();
    grow(40);
    TreeCursor at = cursor();
    ASSERT_TRUE(at.seek(numbered(14)));
    ASSERT_EQ(at.path().back().slot, 3U);
    emptyLeaf(at.path().back().page);
    EXPECT_EQ(at.entriesLeftInLeaf(), 0U);
    EXPECT_TRUE(at.path().back().slot >= at.leaf().count());
    ASSERT_TRUE(at.prior());
    EXPECT_EQ(at.record(), 4U);
}

TEST_F(ForeignTreeTest, ATreeThatWasEmptiedUnderACursorHasNothingBeforeIt) {
    leaveUnchecked();
    grow(3);
    TreeCursor at = cursor();
    ASSERT_TRUE(at.last());
    EXPECT_GT(at.share(), 0.0);
    emptyLeaf(at.path().back().page);
    EXPECT_EQ(at.share(), 0.0);
}

TEST_F(ForeignTreeTest, AStackHoldsNoMoreWhenAnyOfItsBlocksIsAnother) {
    leaveUnchecked();
    grow(40);
    const auto stillHoldsAfter = [&](const std::function<void(const TreeCursor&)>& change) {
        const Bytes whole = stored_->index->bytes;
        TreeCursor at = cursor();
        EXPECT_TRUE(at.seek(numbered(40)));
        EXPECT_TRUE(at.stillHolds());
        change(at);
        const bool holds = at.stillHolds();
        stored_->index->bytes = whole;
        return holds;
    };
    EXPECT_FALSE(stillHoldsAfter([&](const TreeCursor&) { store32(tagHeader() + mdx::root, leafOf(0)); }));
    EXPECT_FALSE(stillHoldsAfter([&](const TreeCursor& at) { emptyLeaf(at.path()[0].page); }));
    EXPECT_FALSE(stillHoldsAfter([&](const TreeCursor& at) { emptyLeaf(at.path().back().page); }));
    EXPECT_FALSE(stillHoldsAfter([&](const TreeCursor& at) {
        const TreeCursor::Level& root = at.path()[0];
        store32(block(root.page) + mdx::items + root.slot * itemLength, leafOf(0));
    }));
    EXPECT_FALSE(
        stillHoldsAfter([&](const TreeCursor& at) { block(at.path().back().page)[mdx::items + 8] = '!'; }));
    EXPECT_FALSE(stillHoldsAfter([&](const TreeCursor& at) { // a leaf that now has others below it
        char* const leaf = block(at.path().back().page);
        store32(leaf + mdx::items + load32(leaf + mdx::keyCount) * itemLength, leafOf(0));
    }));
    EXPECT_FALSE(cursor().stillHolds()) << "one that never stood anywhere";
}

TEST_F(ForeignTreeTest, AStackThatStoodFurtherBackThanABlockReachesNowHoldsNoMore) {
    leaveUnchecked();
    grow(200);
    ASSERT_GE(levels(), 3U);
    TreeCursor at = cursor();
    bool isFound = at.first();
    while (isFound && at.path()[1].slot < 2) {
        isFound = at.next();
    }
    ASSERT_TRUE(isFound);
    store32(block(at.path()[1].page) + mdx::keyCount,
            1); // its first separator and the child after it remain
    EXPECT_FALSE(at.stillHolds());
}

// --- Building

TEST_F(ForeignTreeTest, AnIndexWithoutTagsIsRebuiltToNothing) {
    leaveUnchecked();
    make(5);
    const Schema schema = table_->schema();
    table_.reset();
    MemoryFile file(stored_->index, "MEMORIA.MDX");
    IndexFile::format(file, schema, "ARBOL", {}, UpdateStamp{true, false, 0, 2});
    table_ = stored_->open();
    table_->append(makeRecord(table_->schema(), {"A"}));
    table_->rebuildTags();
    EXPECT_TRUE(table_->tagNames().empty());
    EXPECT_EQ(table_->records().recordCount(), 1U);
}

/// Accepts any write and keeps only its first bytes: no test should have to write two gibibytes.
class BottomlessFile final : public File {
public:
    explicit BottomlessFile(std::shared_ptr<MemoryContent> head) : head_(std::move(head)) {}

    const std::string& path() const override { return head_.path(); }
    bool isWritable() const override { return true; }
    std::uint64_t size() const override { return head_.size(); }
    void read(std::uint64_t offset, std::span<char> bytes) const override { head_.read(offset, bytes); }
    void write(std::uint64_t offset, std::span<const char>) override { last_ = offset; }
    void resize(std::uint64_t) override {}
    void sync() override {}
    bool tryLock(LockRange, LockKind) override { return true; }
    void unlock(LockRange) noexcept override {}
    bool isLockedByOthers(LockRange) const override { return false; }
    [[nodiscard]] std::uint64_t last() const { return last_; }

private:
    MemoryFile head_;
    std::uint64_t last_ = 0;
};

TEST_F(ForeignTreeTest, ATreeThatWouldReachTwoGibibytesIsRefusedWhileItIsBuilt) {
    make(100, {.name = "K", .expression = "K"}, 64);
    auto file = std::make_unique<BottomlessFile>(stored_->index);
    BottomlessFile& bottomless = *file;
    IndexFile index(std::move(file), table_->schema());
    BlockWriter blocks(index, PageSet::headersOf(index));
    const Bytes full(index.blockSize());
    const Error error = errorOf([&] {
        for (int i = 0; i < 70'000; ++i) {
            blocks.put(full);
        }
    });
    EXPECT_EQ(error.code(), ErrorCode::TooLarge);
    EXPECT_LT(bottomless.last(), maxFileSize);
    EXPECT_GT(bottomless.last(), maxFileSize - (std::uint64_t{4} << 20));
}

TEST_F(ForeignTreeTest, BlocksAreWrittenInPiecesThatEndAtTheirMultiplesInTheFile) {
    make(100);
    auto file = std::make_unique<BottomlessFile>(stored_->index);
    const BottomlessFile& bottomless = *file;
    IndexFile index(std::move(file), table_->schema());
    BlockWriter blocks(index, PageSet::headersOf(index));
    const Bytes full(index.blockSize());
    while (blocks.end() * pageBytes < 2 * pieceBytes + pieceBytes / 2) {
        blocks.put(full);
    }
    EXPECT_EQ(bottomless.last(), pieceBytes);
    blocks.flush();
    EXPECT_EQ(bottomless.last(), 2 * pieceBytes);
}

} // namespace
