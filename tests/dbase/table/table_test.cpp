// Records and tags changed together.
#include "dbase/table/table.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "dbase/mdx/index_layout.h"
#include "dbase/support/StoredTable.h"
#include "dbase/system/bytes.h"
#include "dbase/system/error.h"

namespace {

using namespace dbase;
using namespace dbase::test;
using Numbers = std::vector<RecordNumber>;

class StoredTableTest : public ::testing::Test {
protected:
    /// For a test that leaves its table as no engine of ours would.
    void leaveUnchecked() { isChecked_ = false; }
    void TearDown() override {
        if (isChecked_ && stored_ != nullptr) {
            expectSound();
        }
    }

    void make(std::vector<Column> columns, std::vector<TagDefinition> tags,
              LanguageDriver driver = LanguageDriver::AnsiUs) {
        stored_ = std::make_unique<MemoryTable>(TableDefinition{.name = "TABLA",
                                                                .columns = std::move(columns),
                                                                .tags = std::move(tags),
                                                                .languageDriver = driver});
        table_ = stored_->open();
    }
    void makeTexts(std::vector<TagDefinition> tags, LanguageDriver driver = LanguageDriver::AnsiUs) {
        make({{"TEXTO", ColumnType::Character, 10, 0, 0}, {"NUM", ColumnType::Numeric, 4, 0, 0}},
             std::move(tags), driver);
    }
    RecordNumber append(const std::string& text, const std::string& number = {}) {
        return table_->append(makeRecord(table_->schema(), {text, number}));
    }
    void set(RecordNumber number, const std::string& column, const std::string& value) {
        const Bytes shown = storedRecord(*table_, number);
        table_->overwrite(number, shown, withValue(table_->schema(), shown, column, value));
    }
    void erase(RecordNumber number) { table_->erase(number, storedRecord(*table_, number)); }
    void expectSound() const { EXPECT_EQ(stored_->findings(), ""); }
    [[nodiscard]] Bytes& tableBytes() const { return stored_->records->bytes; }
    [[nodiscard]] Bytes& indexBytes() const { return stored_->index->bytes; }

    std::unique_ptr<MemoryTable> stored_;
    std::unique_ptr<Table> table_;

private:
    bool isChecked_ = true;
};

TEST_F(StoredTableTest, AppendsAfterTheLastRecord) {
    makeTexts({{.name = "TEXTO", .expression = "TEXTO"}});
    EXPECT_EQ(append("B"), 1U);
    EXPECT_EQ(append("A"), 2U);
    EXPECT_EQ(order(*table_, "TEXTO"), (Numbers{2, 1}));
    EXPECT_EQ(tableBytes().back(), 0x1A);
    EXPECT_EQ(tableBytes().size(), 97U + 2 * 15 + 1);
    expectSound();
}

TEST_F(StoredTableTest, ALanguageWithUnknownKeyOrderIsReadOnly) {
    for (const int driver : {0x14, 0x18}) {
        makeTexts({{.name = "TEXTO", .expression = "TEXTO"}}, static_cast<LanguageDriver>(driver));
        EXPECT_TRUE(table_->isReadOnly());
        EXPECT_NE(table_->readOnlyReason().find("orden de claves"), std::string::npos);
    }
}

TEST_F(StoredTableTest, AnOverwriteMovesTheRecordInTheTagsItConcernsOnly) {
    makeTexts({{.name = "TEXTO", .expression = "TEXTO"}, {.name = "NUM", .expression = "NUM"}});
    append("A", "3");
    append("B", "2");
    append("C", "1");
    const std::size_t counterAt = 6 * pageBytes + pageBytes * 2 + mdx::changes; // of the second tag's header
    const char before = indexBytes()[counterAt];
    set(1, "TEXTO", "D");
    EXPECT_EQ(order(*table_, "TEXTO"), (Numbers{2, 3, 1}));
    EXPECT_EQ(order(*table_, "NUM"), (Numbers{3, 2, 1}));
    EXPECT_EQ(indexBytes()[counterAt], before);
    expectSound();
}

TEST_F(StoredTableTest, AnOverwriteOfWhatSomebodyElseChangedIsRefused) {
    makeTexts({{.name = "TEXTO", .expression = "TEXTO"}});
    append("A");
    const Bytes shown = storedRecord(*table_, 1);
    set(1, "TEXTO", "B");
    const Bytes table = tableBytes(), index = indexBytes();
    EXPECT_EQ(errorOf([&] { table_->overwrite(1, shown, shown); }).code(), ErrorCode::RecordChanged);
    EXPECT_EQ(errorOf([&] { table_->erase(1, shown); }).code(), ErrorCode::RecordChanged);
    EXPECT_EQ(errorOf([&] { table_->overwrite(2, shown, shown); }).code(), ErrorCode::RecordChanged);
    EXPECT_EQ(errorOf([&] { table_->overwrite(0, shown, shown); }).code(), ErrorCode::RecordChanged);
    EXPECT_EQ(tableBytes(), table);
    EXPECT_EQ(indexBytes(), index);
}

TEST_F(StoredTableTest, ARecordOfAnotherLengthIsRefused) {
    makeTexts({{.name = "TEXTO", .expression = "TEXTO"}});
    append("A");
    const Bytes shown = storedRecord(*table_, 1), table = tableBytes();
    for (const std::size_t length : {0U, 14U, 16U}) {
        EXPECT_EQ(errorOf([&] { table_->append(Bytes(length, ' ')); }).code(), ErrorCode::BadValue);
        EXPECT_EQ(errorOf([&] { table_->overwrite(1, shown, Bytes(length, ' ')); }).code(),
                  ErrorCode::BadValue);
        EXPECT_EQ(errorOf([&] { table_->erase(1, Bytes(length, ' ')); }).code(), ErrorCode::BadValue);
    }
    EXPECT_EQ(tableBytes(), table);
}

TEST_F(StoredTableTest, ADeletedRecordStaysInEveryTag) {
    makeTexts(
        {{.name = "TEXTO", .expression = "TEXTO"}, {.name = "SOLO", .expression = "TEXTO", .unique = true}});
    append("A");
    append("B");
    const Bytes index(indexBytes().begin() + mdx::tagTable, indexBytes().end());
    erase(1);
    EXPECT_EQ(tableBytes()[97], '*');
    EXPECT_EQ(order(*table_, "TEXTO"), (Numbers{1, 2}));
    EXPECT_EQ(Bytes(indexBytes().begin() + mdx::tagTable, indexBytes().end()), index)
        << "only the stamp moved";
    expectSound();
}

TEST_F(StoredTableTest, ATagForLiveRecordsLosesAndRegainsThem) {
    makeTexts({{.name = "VIVOS", .expression = "TEXTO", .condition = ".NOT. DELETED()"}});
    append("B");
    append("A");
    erase(1);
    EXPECT_EQ(order(*table_, "VIVOS"), Numbers{2});
    Bytes undeleted = storedRecord(*table_, 1);
    undeleted[0] = ' ';
    table_->overwrite(1, storedRecord(*table_, 1), undeleted);
    EXPECT_EQ(order(*table_, "VIVOS"), (Numbers{2, 1}));
    expectSound();
}

TEST_F(StoredTableTest, AConditionalTagHoldsExactlyTheRecordsItIsTrueFor) {
    makeTexts({{.name = "PARES", .expression = "TEXTO", .condition = "NUM>=10 .AND. TEXTO<>\"X\""}});
    append("C", "10");
    append("B", "9");
    append("A", "11");
    append("X", "12");
    EXPECT_EQ(order(*table_, "PARES"), (Numbers{3, 1}));
    set(2, "NUM", "20");
    set(3, "NUM", "1");
    EXPECT_EQ(order(*table_, "PARES"), (Numbers{2, 1}));
    expectSound();
}

TEST_F(StoredTableTest, AUniqueTagHoldsTheFirstRecordOfEachKey) {
    makeTexts({{.name = "SOLO", .expression = "TEXTO", .unique = true}});
    append("B");
    append("A");
    append("B");
    append("A");
    EXPECT_EQ(order(*table_, "SOLO"), (Numbers{2, 1}));
    set(4, "TEXTO", "C"); // hidden until now
    EXPECT_EQ(order(*table_, "SOLO"), (Numbers{2, 1, 4}));
    expectSound();
}

TEST_F(StoredTableTest, WhenTheShownRecordOfAUniqueTagGoesAHiddenOneAppears) {
    makeTexts({{.name = "SOLO", .expression = "TEXTO", .unique = true}});
    append("A");
    append("A");
    append("A");
    set(1, "TEXTO", "B");
    EXPECT_EQ(order(*table_, "SOLO"), (Numbers{2, 1}));
    set(1, "TEXTO", "A"); // and gives way to the first again
    EXPECT_EQ(order(*table_, "SOLO"), Numbers{1});
    expectSound();
}

TEST_F(StoredTableTest, NumbersAndDatesLieByValue) {
    make({{"NUM", ColumnType::Numeric, 8, 2, 0}, {"DIA", ColumnType::Date, 8, 0, 0}},
         {{.name = "NUM", .expression = "NUM"},
          {.name = "DIA", .expression = "DIA"},
          {.name = "BAJA", .expression = "DIA", .descending = true}});
    const auto add = [&](const char* number, const char* day) {
        table_->append(makeRecord(table_->schema(), {number, day}));
    };
    add("100.00", "20240101");
    add("-2.75", "19991231");
    add("", "");
    add("-37.00", "18990101");
    add("2.50", "20231231");
    EXPECT_EQ(order(*table_, "NUM"), (Numbers{4, 2, 3, 5, 1})) << "a blank number counts as 0";
    EXPECT_EQ(order(*table_, "DIA"), (Numbers{4, 2, 5, 1, 3})) << "a blank date is the last";
    EXPECT_EQ(order(*table_, "BAJA"), (Numbers{3, 1, 5, 2, 4}));
    set(3, "DIA", "20250101");
    set(1, "DIA", "");
    EXPECT_EQ(order(*table_, "DIA"), (Numbers{4, 2, 5, 3, 1}));
    expectSound();
}

TEST_F(StoredTableTest, BytesOrWeightsAsTheLanguageDriverSays) {
    const auto fill = [&] {
        for (const char* text : {"b", "A", "\xC1", "Z", "a", "\xD1", "N", "O"}) {
            append(text);
        }
    };
    makeTexts({{.name = "TEXTO", .expression = "TEXTO"}});
    fill();
    EXPECT_EQ(order(*table_, "TEXTO"), (Numbers{2, 7, 8, 4, 5, 1, 3, 6}));
    makeTexts({{.name = "TEXTO", .expression = "TEXTO"}}, LanguageDriver::AnsiSpanish);
    fill();
    EXPECT_EQ(order(*table_, "TEXTO"), (Numbers{5, 2, 3, 1, 7, 6, 8, 4}));
    expectSound();
}

/// Another engine with a weighted driver left its keys in byte order: they are read and kept in that
/// order.
TEST_F(StoredTableTest, AWeightedTableWhoseKeysLieByBytesIsReadByBytes) {
    makeTexts({{.name = "TEXTO", .expression = "TEXTO"}});
    for (const char* text : {"b", "A", "\xC1", "Z", "a", "\xD1", "N"}) {
        append(text);
    }
    table_.reset();
    tableBytes()[29] = indexBytes()[mdx::languageDriver] = 0x59;
    table_ = stored_->open();
    EXPECT_EQ(order(*table_, "TEXTO"), (Numbers{2, 7, 4, 5, 1, 3, 6}));
    EXPECT_EQ(seek(*table_, "TEXTO", "\xC1"), 3U);
    append("O");
    set(1, "TEXTO", "c");
    EXPECT_EQ(order(*table_, "TEXTO"), (Numbers{2, 7, 8, 4, 5, 1, 3, 6}));
    expectSound();
    table_->rebuildTags(); // puts them in the driver's order
    EXPECT_EQ(order(*table_, "TEXTO"), (Numbers{5, 2, 3, 1, 7, 6, 8, 4}));
    expectSound();
}

TEST_F(StoredTableTest, AWeightedTableWhoseKeysObeyNoOrderIsRefused) {
    leaveUnchecked();
    makeTexts({{.name = "TEXTO", .expression = "TEXTO"}}, LanguageDriver::AnsiSpanish);
    append("A");
    append("B");
    append("C");
    table_.reset();
    const std::size_t leaf = load32(indexBytes().data() + 4 * pageBytes) * pageBytes;
    indexBytes()[leaf + mdx::items + 16 + 4] = '!'; // between A and C
    EXPECT_EQ(errorOf([&] { (void)stored_->open(); }).code(), ErrorCode::BadIndex);
}

/// Another engine stores negative numbers of narrow columns as 16 bits without a sign: they are sound as they
/// are, and change like all others.
TEST_F(StoredTableTest, NegativeNumbersFiledWithoutSignAreAcceptedAndChanged) {
    makeTexts({{.name = "NUM", .expression = "NUM"}});
    append("UNO", "5");
    append("DOS", "65");
    table_.reset();
    std::copy_n("  -5", 4, tableBytes().begin() + 97 + 15 + 11);
    const std::size_t leaf = load32(indexBytes().data() + 4 * pageBytes) * pageBytes;
    const char key[] = {0x39, 0x55, 0x65, 0x53, 0x10}; // 65531
    std::copy_n(key, sizeof key,
                indexBytes().begin() + static_cast<std::ptrdiff_t>(leaf + mdx::items + 16 + 4));
    expectSound();
    table_ = stored_->open();
    EXPECT_EQ(order(*table_, "NUM"), (Numbers{1, 2}));
    set(2, "NUM", "-6");
    EXPECT_EQ(order(*table_, "NUM"), (Numbers{2, 1})) << "ours carry their sign";
    expectSound();
}

/// An engine that ignores conditions when it writes added an entry that does not belong there.
TEST_F(StoredTableTest, AnEntryThatIsThereAlreadyIsNotAddedAgain) {
    makeTexts({{.name = "PARES", .expression = "TEXTO", .condition = "NUM>=10"}});
    append("A", "10");
    table_.reset();
    std::copy_n("   1", 4, tableBytes().begin() + 97 + 11);
    table_ = stored_->open();
    set(1, "NUM", "20");
    EXPECT_EQ(order(*table_, "PARES"), Numbers{1});
    expectSound();
}

TEST_F(StoredTableTest, AConditionThatDoesNotFitInSmallBlocksIsNotIgnored) {
    leaveUnchecked();
    stored_ =
        std::make_unique<MemoryTable>(TableDefinition{.name = "TABLA",
                                                      .columns = {{"TEXTO", ColumnType::Character, 10, 0, 0}},
                                                      .tags = {{.name = "TEXTO", .expression = "TEXTO"}}},
                                      1);
    stored_->open()->append(Bytes(11, ' '));
    indexBytes()[4 * pageBytes + mdx::hasCondition] = 1;
    table_ = stored_->open();
    EXPECT_TRUE(table_->isReadOnly());
    EXPECT_NE(table_->readOnlyReason().find("condición"), std::string::npos) << table_->readOnlyReason();
}

TEST_F(StoredTableTest, BytesThatADeadLoaderLeftAfterTheLastRecordGoWithTheNextAppend) {
    makeTexts({{.name = "TEXTO", .expression = "TEXTO"}});
    append("A");
    tableBytes().insert(tableBytes().end(), 1000, 'x');
    append("B");
    EXPECT_EQ(tableBytes().size(), 97U + 2 * 15 + 1);
    expectSound();
}

TEST_F(StoredTableTest, ATableWithoutTagsIsChangedToo) {
    makeTexts({});
    append("A");
    append("B");
    set(1, "TEXTO", "C");
    erase(2);
    EXPECT_EQ(valueOf(table_->schema(), storedRecord(*table_, 1), "TEXTO"), "C");
    EXPECT_EQ(table_->changeCounter(), 0U);
    expectSound();
}

TEST_F(StoredTableTest, ATableWithMemosIsReadOnlyAndSaysSo) {
    makeTexts({});
    append("A");
    tableBytes()[32 + 11] = 'M';
    table_ = stored_->open();
    EXPECT_TRUE(table_->isReadOnly());
    EXPECT_NE(table_->readOnlyReason().find("memo"), std::string::npos);
}

TEST_F(StoredTableTest, TheCounterMovesByTwoWithEveryChange) {
    makeTexts({{.name = "TEXTO", .expression = "TEXTO"}});
    const std::uint64_t start = table_->changeCounter();
    EXPECT_EQ(start % 2, 0U);
    append("A");
    EXPECT_EQ(table_->changeCounter(), start + 2);
    set(1, "NUM", "5");
    EXPECT_EQ(table_->changeCounter(), start + 4);
    (void)order(*table_, "TEXTO");
    EXPECT_EQ(table_->changeCounter(), start + 4);
}

TEST_F(StoredTableTest, TagsAreFoundWhateverTheirLetterCase) {
    makeTexts({{.name = "TEXTO", .expression = "TEXTO"}});
    EXPECT_NE(table_->findTag("texto"), nullptr);
    EXPECT_EQ(table_->findTag("TEXT"), nullptr);
}

} // namespace
