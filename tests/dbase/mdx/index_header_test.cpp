// Headers of tags as other engines write them, and free lists that lead into them.
#include "dbase/table/hostile_fixture.h"
#include "dbase/table/table_definition.h"

namespace {

using namespace dbase;
using namespace dbase::test;

class IndexHeaderTest : public HostileTest {
protected:
    [[nodiscard]] std::size_t secondTag() const {
        return blockAt(load32(index.data() + firstEntry + mdx::tagEntrySize));
    }
    void putText(std::size_t at, const std::string& text) {
        std::fill_n(index.begin() + static_cast<std::ptrdiff_t>(at), mdx::textSize, '\0');
        std::copy(text.begin(), text.end(), index.begin() + static_cast<std::ptrdiff_t>(at));
    }
    /// Expects the table to be open read-only, with this text in the reason.
    void expectNotUnderstood(const std::string& reason) {
        putOnDisk();
        const auto opened = Table::open(path());
        EXPECT_TRUE(opened->isReadOnly());
        EXPECT_NE(opened->readOnlyReason().find(reason), std::string::npos) << opened->readOnlyReason();
        expectUnchanged();
    }
};

TEST_F(IndexHeaderTest, AKeyOfFloatTypeIsANumber) {
    index[secondTag() + mdx::keyType] = 'F';
    putOnDisk();
    const auto opened = Table::open(path());
    EXPECT_EQ(opened->findTag("NUM")->keyType, KeyType::Numeric);
    EXPECT_EQ(order(*opened, "NUM").size(), 60U);
}

TEST_F(IndexHeaderTest, ATagIsUniqueBySignOfEitherByte) {
    index[secondTag() + mdx::unique] = 1;
    putOnDisk();
    EXPECT_TRUE(Table::open(path())->findTag("NUM")->definition.unique);
    index[secondTag() + mdx::unique] = 0;
    index[secondTag() + mdx::format] |= static_cast<char>(mdx::formatUnique);
    putOnDisk();
    EXPECT_TRUE(Table::open(path())->findTag("NUM")->definition.unique);
}

TEST_F(IndexHeaderTest, AnExpressionOfAnotherTypeThanItsKeysIsNotUnderstood) {
    putText(firstTag + mdx::expression, "NUM");
    expectNotUnderstood("tipo de clave");
    putText(firstTag + mdx::expression, "NUM=1");
    expectNotUnderstood("tipo de clave");
    putText(firstTag + mdx::expression, "CTOD('')");
    expectNotUnderstood("NOMBRE");
}

TEST_F(IndexHeaderTest, AConditionThatIsNoneIsNotUnderstood) {
    index[firstTag + mdx::hasCondition] = 1;
    putText(firstTag + mdx::condition, "NUM");
    expectNotUnderstood("no es lógica");
}

TEST_F(IndexHeaderTest, HeadersLieInAnyOrder) {
    std::swap_ranges(index.begin() + static_cast<std::ptrdiff_t>(firstEntry),
                     index.begin() + static_cast<std::ptrdiff_t>(firstEntry + mdx::tagEntrySize),
                     index.begin() + static_cast<std::ptrdiff_t>(firstEntry + mdx::tagEntrySize));
    putOnDisk();
    const auto opened = Table::open(path());
    EXPECT_EQ(opened->tagNames(), (std::vector<std::string>{"NUM", "NOMBRE"}));
    use(*opened);
}

TEST_F(IndexHeaderTest, TagsAreFoundInAnyCaseAndByTheirWholeName) {
    putOnDisk();
    const auto opened = Table::open(path());
    EXPECT_NE(opened->findTag("nombre"), nullptr);
    EXPECT_EQ(opened->findTag("nombr{"), nullptr);
    EXPECT_EQ(opened->findTag("nombr"), nullptr);
    EXPECT_EQ(opened->findTag(""), nullptr);
}

TEST_F(IndexHeaderTest, BlocksTooSmallForAConditionAreReportedAndRebuilt) {
    createTable(folder.path(), {.name = "COND",
                                .columns = {{"NOMBRE", ColumnType::Character, 20, 0, 0}},
                                .tags = {{.name = "NOMBRE",
                                          .expression = "NOMBRE",
                                          .condition = "NOMBRE>'" + std::string(150, 'A') + "'"}}});
    Bytes bytes = readFile(folder / "COND.MDX");
    bytes[mdx::blockPages] = 1;
    writeFile(folder / "COND.MDX", bytes);
    EXPECT_NE(findings(folder / "COND.DBF"), "");
    EXPECT_EQ(readFile(folder / "COND.MDX"), bytes);
}

/// One tag that grows and one without entries, whose empty root looks like a free block.
class FreeListIntoHeaders : public ::testing::Test {
protected:
    static constexpr int rows = 60;

    FreeListIntoHeaders() { append(0, rows / 2); }
    void append(int from, int to) {
        for (int i = from; i < to; ++i) {
            table_->append(makeRecord(table_->schema(), {"CALLE " + std::to_string(100 + i), "1"}));
        }
    }
    [[nodiscard]] char* header(const char* tag) const {
        return stored_.index->bytes.data() + std::size_t{table_->findTag(tag)->headerPage} * pageBytes;
    }
    void setFreeList(std::uint32_t page) const { store32(stored_.index->bytes.data() + mdx::freeList, page); }

    MemoryTable stored_{
        {.name = "LIBRES",
         .columns = {{"NOMBRE", ColumnType::Character, 100, 0, 0}, {"NUM", ColumnType::Numeric, 6, 0, 0}},
         .tags = {{.name = "NOMBRE", .expression = "NOMBRE"},
                  {.name = "NADA", .expression = "NOMBRE", .condition = "NUM>9"}}}};
    std::unique_ptr<Table> table_ = stored_.open();
};

TEST_F(FreeListIntoHeaders, TheEmptyRootOfAnotherTagIsNotTaken) {
    const std::uint32_t root = load32(header("NADA") + mdx::root);
    setFreeList(root);
    append(rows / 2, rows);
    EXPECT_EQ(load32(header("NADA") + mdx::root), root);
    EXPECT_EQ(order(*table_, "NOMBRE").size(), static_cast<std::size_t>(rows));
    EXPECT_TRUE(order(*table_, "NADA").empty());
    EXPECT_EQ(stored_.findings(), "");
}

TEST_F(FreeListIntoHeaders, TheHeaderOfATagWithoutTreeIsNotTaken) {
    const Bytes before(header("NADA"), header("NADA") + 1024);
    store32(header("NADA") + mdx::root, 0);
    setFreeList(table_->findTag("NADA")->headerPage);
    append(rows / 2, rows);
    store32(header("NADA") + mdx::root, load32(before.data() + mdx::root));
    EXPECT_EQ(Bytes(header("NADA"), header("NADA") + 1024), before);
    EXPECT_EQ(order(*table_, "NOMBRE").size(), static_cast<std::size_t>(rows));
    EXPECT_EQ(stored_.findings(), "");
}

} // namespace
