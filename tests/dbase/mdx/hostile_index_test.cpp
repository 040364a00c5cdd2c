// Malformed indexes: each is refused with a clear text, or read as far as it is valid; nothing crashes, hangs
// or is changed.
#include <filesystem>

#include "dbase/table/hostile_fixture.h"

namespace {

using namespace dbase;
using namespace dbase::test;

TEST_F(HostileTest, AnIndexThatWouldGrowToTwoGibibytesIsRefusedAndNothingIsAdded) {
    putOnDisk();
    constexpr std::uintmax_t nearlyTooLarge = maxFileSize + 1 - blockLength;
    std::filesystem::resize_file(indexPath(), nearlyTooLarge);
    const auto opened = Table::open(path());
    Error last(ErrorCode::BadState, {}, {});
    RecordNumber count = 0;
    for (int i = 0; i < 20 && last.code() != ErrorCode::TooLarge; ++i) {
        count = opened->records().recordCount();
        try {
            opened->append(makeRecord(opened->schema(), {"CALLE 130", "1"}));
        } catch (const Error& error) {
            last = error;
        }
    }
    EXPECT_EQ(last.code(), ErrorCode::TooLarge);
    EXPECT_EQ(last.file(), indexPath());
    EXPECT_EQ(opened->records().recordCount(), count);
    EXPECT_EQ(order(*opened, "NOMBRE").size(), count);
    EXPECT_EQ(std::filesystem::file_size(indexPath()), nearlyTooLarge);
}

TEST_F(HostileTest, AnIndexThatAnotherProgramMakesLargerThanItsViewIsReadNoFurther) {
    putOnDisk();
    const auto opened = Table::open(path());
    std::filesystem::resize_file(indexPath(), std::uintmax_t{3} << 30);
    std::vector<char> buffer;
    for (const PageNumber page : {PageNumber{maxFileSize / pageBytes}, PageNumber{5'000'000}}) {
        EXPECT_EQ(errorOf([&] { (void)opened->index()->block(page, buffer); }).code(), ErrorCode::BadIndex);
    }
    EXPECT_EQ(order(*opened, "NOMBRE").size(), 60U);
}

TEST_F(HostileTest, AMissingIndexOpensReadOnlyAndSaysSo) {
    putOnDisk();
    std::filesystem::remove(indexPath());
    const auto opened = Table::open(path());
    EXPECT_TRUE(opened->isReadOnly());
    EXPECT_NE(opened->readOnlyReason().find(".MDX"), std::string::npos) << opened->readOnlyReason();
    EXPECT_TRUE(opened->tagNames().empty());
    EXPECT_EQ(storedRecord(*opened, 60).size(), recordLength);
    const Error error = errorOf([&] { opened->append(storedRecord(*opened, 1)); });
    EXPECT_EQ(error.code(), ErrorCode::ReadOnly);
    EXPECT_EQ(readFile(path()), table);
}

TEST_F(HostileTest, AFileWithoutPermissionToWriteIsReadOnlyAndSaysSo) {
    auto records = std::make_shared<MemoryContent>(), tags = std::make_shared<MemoryContent>();
    records->bytes = table;
    tags->bytes = index;
    for (const bool isTable : {true, false}) {
        Table opened(std::make_unique<MemoryFile>(records, "HOSTIL.DBF", !isTable),
                     std::make_unique<MemoryFile>(tags, "HOSTIL.MDX", isTable));
        EXPECT_TRUE(opened.isReadOnly());
        EXPECT_NE(opened.readOnlyReason().find("permiso"), std::string::npos) << opened.readOnlyReason();
        use(opened);
        const Bytes record = storedRecord(opened, 1);
        int owner = 0;
        EXPECT_EQ(errorOf([&] { opened.append(record); }).code(), ErrorCode::ReadOnly);
        EXPECT_EQ(errorOf([&] { opened.overwrite(1, record, record); }).code(), ErrorCode::ReadOnly);
        EXPECT_EQ(errorOf([&] { opened.erase(1, record); }).code(), ErrorCode::ReadOnly);
        EXPECT_EQ(errorOf([&] { opened.rebuildTags(); }).code(), ErrorCode::ReadOnly);
        EXPECT_EQ(errorOf([&] { (void)opened.tryLockRecord(1, &owner); }).code(), ErrorCode::ReadOnly);
    }
    EXPECT_EQ(records->bytes, table);
    EXPECT_EQ(tags->bytes, index);
}

TEST_F(HostileTest, ATagThatIsNotUnderstoodIsReadAndNeverWritten) {
    const std::string expression = "FUNCION(NOMBRE)";
    std::copy(expression.begin(), expression.end(), index.begin() + firstTag + mdx::expression);
    putOnDisk();
    const auto opened = Table::open(path());
    EXPECT_TRUE(opened->isReadOnly());
    EXPECT_NE(opened->readOnlyReason().find("FUNCION"), std::string::npos) << opened->readOnlyReason();
    EXPECT_EQ(order(*opened, "NOMBRE").size(), 60U);
    EXPECT_EQ(errorOf([&] { opened->erase(1, storedRecord(*opened, 1)); }).code(), ErrorCode::ReadOnly);
    EXPECT_EQ(errorOf([&] { reindexTable(path()); }).code(), ErrorCode::BadIndex);
    expectUnchanged();
}

TEST_F(HostileTest, ACutIndexIsRefused) {
    for (const std::size_t size : {0U, 1U, 2047U, 2048U, 3000U}) {
        index.resize(size);
        expectBadIndex();
    }
}

TEST_F(HostileTest, AnIndexCutInItsTreesIsRefusedOrWhole) {
    for (std::size_t size = 3 * 1024; size < index.size(); size += 512) {
        const Bytes whole = index;
        index.resize(size);
        putOnDisk();
        EXPECT_NE(findings(path()), "") << size;
        try {
            use(*Table::open(path()));
        } catch (const Error& error) {
            EXPECT_EQ(error.code(), ErrorCode::BadIndex) << error.what();
        }
        expectUnchanged();
        index = whole;
    }
}

TEST_F(HostileTest, AWrongIndexVersionIsRefused) {
    index[mdx::version] = 3;
    expectBadIndex("cabecera");
}

TEST_F(HostileTest, ImpossibleBlockSizesAreRefused) {
    for (const std::uint16_t pages : {std::uint16_t{0}, std::uint16_t{65}, std::uint16_t{0xFFFF}}) {
        store16(index.data() + mdx::blockPages, pages);
        expectBadIndex();
    }
}

TEST_F(HostileTest, ImpossibleTagCountsAreRefused) {
    for (const std::uint16_t count : {std::uint16_t{48}, std::uint16_t{0xFFFF}}) {
        store16(index.data() + mdx::tagsInUse, count);
        expectBadIndex("tags");
    }
}

TEST_F(HostileTest, ATagCountBeyondTheEntriesIsRefused) {
    store16(index.data() + mdx::tagsInUse, 3);
    expectBadIndex("nombre");
}

TEST_F(HostileTest, ATagNameWithoutEndIsRefused) {
    std::fill_n(index.begin() + firstEntry + mdx::entryName, mdx::entryNameSize, 'N');
    expectBadIndex("nombre");
}

TEST_F(HostileTest, ATagHeaderOutsideIsRefused) {
    for (const std::uint32_t page :
         {0U, 3U, 100000U, 0xFFFFFFFFU, static_cast<unsigned>(index.size() / pageBytes) - 1}) {
        store32(index.data() + firstEntry, page);
        expectBadIndex("página");
    }
}

TEST_F(HostileTest, TwoTagsOnOneHeaderAreRefused) {
    store32(index.data() + firstEntry + mdx::tagEntrySize, load32(index.data() + firstEntry));
    expectBadIndex("NUM");
}

TEST_F(HostileTest, OverlappingTagHeadersAreRefused) {
    std::copy_n(index.begin() + firstTag, 512, index.begin() + firstTag + 512);
    store32(index.data() + firstEntry + mdx::tagEntrySize, load32(index.data() + firstEntry) + 1);
    expectBadIndex("NUM");
}

TEST_F(HostileTest, ImpossibleKeysAreRefused) {
    for (const std::uint16_t length : {std::uint16_t{0}, std::uint16_t{101}, std::uint16_t{0xFFFF}}) {
        store16(index.data() + firstTag + mdx::keyLength, length);
        expectBadIndex("NOMBRE");
    }
    store16(index.data() + firstTag + mdx::keyLength, 100);
    for (const std::uint16_t length : {std::uint16_t{0}, std::uint16_t{103}, std::uint16_t{0xFFFF}}) {
        store16(index.data() + firstTag + mdx::itemLength, length);
        expectBadIndex("NOMBRE");
    }
    store16(index.data() + firstTag + mdx::itemLength, itemLength);
    index[firstTag + mdx::keyType] = 'X';
    expectBadIndex("NOMBRE");
}

TEST_F(HostileTest, ARootOutsideIsRefused) {
    for (const std::uint32_t page : {0U, 3U, 100000U, 0xFFFFFFFFU}) {
        store32(index.data() + firstTag, page);
        expectBadIndex("página");
    }
}

TEST_F(HostileTest, AChildOutsideIsRefused) {
    for (const std::uint32_t page : {1U, 100000U, 0xFFFFFFFFU}) {
        store32(index.data() + blockAt(root()) + mdx::items, page);
        expectBadIndex("página");
    }
}

TEST_F(HostileTest, ABlockThatIsItsOwnChildIsRefused) {
    store32(index.data() + blockAt(root()) + mdx::items, root());
    expectBadIndex("no termina");
}

TEST_F(HostileTest, ABlockReachedTwiceIsRefusedOrFound) {
    store32(index.data() + blockAt(root()) + mdx::items, leaf(1));
    putOnDisk();
    try {
        use(*Table::open(path()));
    } catch (const Error& error) {
        EXPECT_EQ(error.code(), ErrorCode::BadIndex);
    }
    EXPECT_NE(findings(path()), "");
    expectUnchanged();
}

// Levels of blocks whose children are all the same block one level down: practically endless.
TEST_F(HostileTest, AWebOfBlocksComesToAnEnd) {
    const std::size_t first = index.size();
    constexpr std::uint32_t levels = 28;
    for (std::uint32_t level = 0; level < levels; ++level) {
        Bytes block(blockLength);
        const auto next = static_cast<std::uint32_t>((first + (level + 1) * blockLength) / pageBytes);
        store32(block.data(), 2);
        for (std::size_t i = 0; i < 3; ++i) {
            store32(block.data() + mdx::items + i * itemLength, level + 1 == levels ? leaf(0) : next);
        }
        index.insert(index.end(), block.begin(), block.end());
    }
    store32(index.data() + firstTag, static_cast<std::uint32_t>(first / pageBytes));
    expectBadIndex();
}

TEST_F(HostileTest, ALeafCountThatDoesNotFitIsRefused) {
    for (const std::uint32_t count : {10U, 100U, 0x7FFFFFFFU, 0xFFFFFFFFU}) {
        store32(index.data() + blockAt(leaf(0)), count);
        expectBadIndex("página");
    }
}

TEST_F(HostileTest, AnEntryOfNoRecordIsRefused) {
    for (const std::uint32_t number : {0U, 61U, 0xFFFFFFFFU}) {
        store32(index.data() + blockAt(leaf(0)) + mdx::items, number);
        putOnDisk();
        EXPECT_NE(findings(path()), "");
        const auto opened = Table::open(path());
        EXPECT_THROW(
            {
                for (const RecordNumber each : order(*opened, "NOMBRE")) {
                    (void)storedRecord(*opened, each);
                }
            },
            Error);
        expectUnchanged();
    }
}

TEST_F(HostileTest, KeysOutOfOrderAreFound) {
    const std::size_t items = blockAt(leaf(0)) + mdx::items;
    std::swap_ranges(index.begin() + static_cast<std::ptrdiff_t>(items),
                     index.begin() + static_cast<std::ptrdiff_t>(items + itemLength),
                     index.begin() + static_cast<std::ptrdiff_t>(items + itemLength));
    putOnDisk();
    EXPECT_NE(findings(path()), "");
}

TEST_F(HostileTest, AnEditWhoseOldEntryIsNotThereIsRefusedAndChangesNothing) {
    const std::size_t key = blockAt(leaf(0)) + mdx::items + 4;
    index[key] = '!';
    putOnDisk();
    const auto opened = Table::open(path());
    const Bytes record = storedRecord(*opened, 1);
    const Error error =
        errorOf([&] { opened->overwrite(1, record, withValue(opened->schema(), record, "NOMBRE", "OTRA")); });
    EXPECT_EQ(error.code(), ErrorCode::BadIndex);
    EXPECT_NE(std::string(error.what()).find("registro 1"), std::string::npos) << error.what();
    expectUnchanged();
}

// A sound engine never writes a block with one child and no separator: removing its only leaf
// must not access anything out of bounds.
TEST_F(HostileTest, ALoneChildThatGoesIsRefused) {
    const std::size_t at = blockAt(root());
    const std::uint32_t only = leaf(0);
    store32(index.data() + at, 0);
    store32(index.data() + at + mdx::items, only);
    store32(index.data() + blockAt(only), 1);
    store32(index.data() + blockAt(only) + mdx::items + itemLength, 0);
    std::fill_n(index.begin() + mdx::stamp, mdx::stampSize, '\0');
    store32(table.data() + 4, 1);
    table[load16(table.data() + 8) + std::size_t{load16(table.data() + 10)}] =
        0x1A; // the others are no longer records
    store32(index.data() + mdx::stamp + 12, 1);
    std::copy_n(mdx::stampMagic, 8, index.begin() + mdx::stamp);
    putOnDisk();
    const auto opened = Table::open(path());
    const Bytes record = storedRecord(*opened, 1);
    EXPECT_EQ(errorOf([&] {
                  opened->overwrite(1, record, withValue(opened->schema(), record, "NOMBRE", "OTRA"));
              }).code(),
              ErrorCode::BadIndex);
    expectUnchanged();
}

// --- The free list

class HostileFreeList : public HostileTest {
protected:
    /// Appends until the first tag must have taken blocks, then runs the full check.
    void expectRightAppends() {
        putOnDisk();
        {
            const auto opened = Table::open(path());
            for (int i = 0; i < 30; ++i) {
                opened->append(makeRecord(opened->schema(), {"PLAZA " + std::to_string(i), "1"}));
            }
        }
        EXPECT_EQ(findings(path()), "");
    }
    std::uint32_t addBlock(std::uint32_t next) {
        const auto page = static_cast<std::uint32_t>(index.size() / pageBytes);
        index.resize(index.size() + blockLength);
        store32(index.data() + blockAt(page) + mdx::freeNext, next);
        store32(index.data() + mdx::pageCount, page + 2);
        return page;
    }
    void startAt(std::uint32_t page) { store32(index.data() + mdx::freeList, page); }
};

TEST_F(HostileFreeList, AListThatIsSoundIsUsed) {
    expectRightAppends();
    const std::size_t sizeWithoutList = readFile(indexPath()).size();
    startAt(addBlock(addBlock(0)));
    expectRightAppends();
    EXPECT_EQ(readFile(indexPath()).size(), sizeWithoutList) << "the two free blocks come first";
}

TEST_F(HostileFreeList, ACycleIsFoundAndGivenUp) {
    const std::uint32_t one = addBlock(0), two = addBlock(one);
    store32(index.data() + blockAt(one) + mdx::freeNext, two);
    startAt(one);
    putOnDisk();
    EXPECT_NE(findings(path()), "");
    expectUnchanged();
    expectRightAppends();
}

TEST_F(HostileFreeList, ABlockThatFollowsItselfIsGivenUp) {
    const std::uint32_t page = addBlock(0);
    store32(index.data() + blockAt(page) + mdx::freeNext, page);
    startAt(page);
    expectRightAppends();
}

TEST_F(HostileFreeList, ABlockOutsideIsGivenUp) {
    for (const std::uint32_t page : {1U, 100000U, 0xFFFFFFFFU}) {
        startAt(page);
        expectRightAppends();
    }
}

TEST_F(HostileFreeList, ABlockInUseIsNotTaken) {
    for (const std::uint32_t page : {leaf(0), root(), leaf(0) + 1, 4U, 5U}) {
        startAt(page);
        expectRightAppends();
    }
}

} // namespace
