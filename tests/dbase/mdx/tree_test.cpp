// The B-trees of the tags: walking, seeking, splitting, emptying, reusing blocks.
#include "tree_fixture.h"

namespace {

using namespace dbase;
using namespace dbase::test;

TEST_F(TreeTest, AnEmptyTreeHasNoEntry) {
    make(5);
    TreeCursor at = cursor();
    EXPECT_FALSE(at.first());
    EXPECT_FALSE(at.last());
    EXPECT_FALSE(at.seek("A"));
    EXPECT_FALSE(at.isOnEntry());
}

TEST_F(TreeTest, AStepBeyondTheEndsFindsNothing) {
    make(5);
    append("A");
    TreeCursor at = cursor();
    ASSERT_TRUE(at.first());
    EXPECT_FALSE(at.prior());
    ASSERT_TRUE(at.last());
    EXPECT_FALSE(at.next());
}

TEST_F(TreeTest, GrowsDeepAndStaysInOrder) {
    make(100, {.name = "K", .expression = "K"}, 1); // four keys per block
    for (int i = 0; i < 700; ++i) {
        append(numbered(i * 7919 % 700));
    }
    EXPECT_GE(levels(), 5U);
    const std::vector<RecordNumber> numbers = order(*table_, "K");
    ASSERT_EQ(numbers.size(), 700U);
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        ASSERT_EQ(valueOf(table_->schema(), storedRecord(*table_, numbers[i]), "K"),
                  numbered(static_cast<int>(i)));
    }
    EXPECT_EQ(stored_->findings(), "");
}

TEST_F(TreeTest, SeekFindsTheFirstAtOrAfter) {
    make(5);
    for (int i = 0; i < 500; ++i) {
        append(numbered(i * 2));
    }
    EXPECT_EQ(seek(*table_, "K", "00000"), 1U);
    EXPECT_EQ(seek(*table_, "K", "00500"), 251U);
    EXPECT_EQ(seek(*table_, "K", "00501"), 252U);
    EXPECT_EQ(seek(*table_, "K", "00998"), 500U);
    EXPECT_EQ(seek(*table_, "K", "00999"), 0U);
    EXPECT_EQ(seek(*table_, "K", "005"), 251U) << "a shorter key is compared on its own length";
}

TEST_F(TreeTest, SeekFindsTheFirstOfEqualKeysThatSpanPages) {
    make(1);
    for (int i = 0; i < 900; ++i) {
        append(i % 3 == 0 ? "A" : i % 3 == 1 ? "B" : "C");
    }
    EXPECT_GE(leafCount(), 7U);
    EXPECT_EQ(seek(*table_, "K", "A"), 1U);
    EXPECT_EQ(seek(*table_, "K", "B"), 2U);
    EXPECT_EQ(seek(*table_, "K", "C"), 3U);
}

TEST_F(TreeTest, SeveralCursorsSeekTogetherAsEachAlone) {
    for (const int count : {0, 1, 400}) {
        make(100);
        for (int i = 0; i < count; ++i) {
            append(numbered(2 * i / 3)); // some twice
        }
        std::vector<std::string> wanted;
        std::vector<TreeCursor> together;
        for (int i = 0; i < 1200; ++i) {
            wanted.push_back(numbered(i / 4) + (i % 2 == 0 ? "" : "X"));
            together.emplace_back(*table_->index(), tag());
        }
        TreeCursor::seekTogether(together, std::vector<std::string_view>(wanted.begin(), wanted.end()));
        for (std::size_t i = 0; i < wanted.size(); ++i) {
            TreeCursor alone = cursor();
            ASSERT_EQ(together[i].isOnEntry(), alone.seek(wanted[i])) << wanted[i];
            if (alone.isOnEntry()) {
                ASSERT_EQ(together[i].record(), alone.record()) << wanted[i];
                ASSERT_EQ(together[i].next(), alone.next());
                ASSERT_EQ(together[i].isOnEntry(), alone.isOnEntry());
            }
        }
    }
    TreeCursor::seekTogether({}, {});
}

TEST_F(TreeTest, EqualKeysKeepRecordOrder) {
    make(3);
    for (int i = 0; i < 600; ++i) {
        append("IGU");
    }
    EXPECT_EQ(order(*table_, "K"), upTo(600));
    setKey(300, "OTR");
    setKey(300, "IGU"); // back among its equals, not after them
    EXPECT_EQ(order(*table_, "K"), upTo(600));
}

TEST_F(TreeTest, EqualKeysKeepRecordOrderInADescendingTagToo) {
    make(3, {.name = "K", .expression = "K", .descending = true});
    for (int i = 0; i < 400; ++i) {
        append("IGU");
    }
    append("ZZZ");
    append("AAA");
    std::vector<RecordNumber> expected = upTo(400);
    expected.insert(expected.begin(), 401);
    expected.push_back(402);
    EXPECT_EQ(order(*table_, "K"), expected);
    setKey(200, "ZZZ");
    setKey(200, "IGU");
    EXPECT_EQ(order(*table_, "K"), expected);
}

TEST_F(TreeTest, RowsAddedInKeyOrderLeaveFullPages) {
    make(5);
    for (int i = 0; i < 84 * 10; ++i) {
        append(numbered(i));
    }
    EXPECT_EQ(leafCount(), 10U);
}

TEST_F(TreeTest, EmptiedLeavesAreUsedAgain) {
    make(5);
    for (int i = 0; i < 1000; ++i) {
        append(numbered(i));
    }
    const std::size_t size = indexSize();
    for (int round = 1; round <= 5; ++round) {
        for (RecordNumber number = 1; number <= 1000; ++number) {
            setKey(number, numbered(static_cast<int>(number) + round * 1000));
        }
    }
    EXPECT_LE(indexSize(), size + 2 * 1024);
    EXPECT_EQ(order(*table_, "K"), upTo(1000));
    EXPECT_EQ(stored_->findings(), "");
}

TEST_F(TreeTest, ShrinksToASingleLeaf) {
    make(100, {.name = "K", .expression = "K", .unique = true}, 1);
    for (int i = 0; i < 300; ++i) {
        append(numbered(i));
    }
    ASSERT_GE(levels(), 4U);
    for (RecordNumber number = 1; number <= 300; ++number) {
        setKey(number, "UNO");
    }
    EXPECT_EQ(levels(), 1U);
    EXPECT_EQ(order(*table_, "K"), std::vector<RecordNumber>{1});
    EXPECT_EQ(stored_->findings(), "");
}

// Removes keys in many orders: every way in which blocks lose a child, from the left, the right and the
// middle.
TEST_F(TreeTest, EveryOrderOfRemovalKeepsTheTreeWhole) {
    for (const int stride : {1, 7, 53, 89, 149, 179, 181}) { // all coprime to 180 except for the ends
        make(100, {.name = "K", .expression = "K", .unique = true}, 1);
        for (int i = 0; i < 180; ++i) {
            append(numbered(i));
        }
        for (int i = 0; i < 180; ++i) {
            setKey(static_cast<RecordNumber>(i * stride % 180 + 1), "UNO");
            if (i % 20 == 0) {
                ASSERT_EQ(stored_->findings(), "") << stride << ", " << i;
            }
        }
        ASSERT_EQ(stored_->findings(), "") << stride;
    }
}

TEST_F(TreeTest, WalkingBackAndForthBetweenLeavesIsNoCycle) {
    make(5);
    for (int i = 0; i < 100; ++i) {
        append(numbered(i));
    }
    TreeCursor at = cursor();
    ASSERT_TRUE(at.seek(numbered(83))); // the last of the first leaf
    for (int i = 0; i < 2000; ++i) {
        ASSERT_TRUE(at.next());
        ASSERT_TRUE(at.prior());
    }
    EXPECT_EQ(at.record(), 84U);
}

TEST_F(TreeTest, AStackHoldsUntilItsEntryMoves) {
    make(5);
    for (int i = 0; i < 200; ++i) {
        append(numbered(i * 2));
    }
    TreeCursor at = cursor();
    ASSERT_TRUE(at.seek(numbered(100)));
    EXPECT_TRUE(at.stillHolds());
    setKey(200, "99999"); // another leaf
    EXPECT_TRUE(at.stillHolds());
    append(numbered(99)); // before it in its leaf
    EXPECT_FALSE(at.stillHolds());
}

TEST_F(TreeTest, FindSeesNumbersWhoseDigitsAreNotedDifferently) {
    stored_ = std::make_unique<MemoryTable>(TableDefinition{.name = "NUM",
                                                            .columns = {{"N", ColumnType::Numeric, 6, 0, 0}},
                                                            .tags = {{.name = "K", .expression = "N"}}});
    table_ = stored_->open();
    for (int i = 1; i <= 9; ++i) {
        table_->append(makeRecord(table_->schema(), {std::to_string(i)}));
    }
    const TreeRoot root = table_->index()->treeRoot(tag());
    // As an engine writes them that rounds the number of digits up to an even one.
    for (std::size_t i = 0; i < 9; ++i) {
        stored_->index->bytes[root.root * pageBytes + mdx::items + i * 16 + 5] = 0x09;
    }
    setKey(5, "50");
    EXPECT_EQ(order(*table_, "K"), (std::vector<RecordNumber>{1, 2, 3, 4, 6, 7, 8, 9, 5}));
    EXPECT_EQ(stored_->findings(), "");
}

TEST_F(TreeTest, HeaderKeepsTheOutermostLeaves) {
    make(5);
    for (int i = 0; i < 400; ++i) {
        append(numbered(i));
    }
    const auto expectEnds = [&] {
        const TreeRoot root = table_->index()->treeRoot(tag());
        TreeCursor at = cursor();
        ASSERT_TRUE(at.first());
        EXPECT_EQ(root.firstLeaf, at.path().back().page);
        ASSERT_TRUE(at.last());
        EXPECT_EQ(root.lastLeaf, at.path().back().page);
        EXPECT_TRUE(root.holdsKeys);
    };
    expectEnds();
    for (RecordNumber number = 1; number <= 90; ++number) { // empties the first leaf
        setKey(number, "77777");
    }
    expectEnds();
    for (RecordNumber number = 1; number <= 90; ++number) { // and the last one
        setKey(number, "00000");
    }
    expectEnds();
}

} // namespace
