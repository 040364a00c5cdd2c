// The full check finds every fault, says where, and changes nothing; a reindex repairs it.
#include "dbase/table/check.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string_view>

#include "dbase/lock/locks.h"
#include "dbase/mdx/index_layout.h"
#include "dbase/support/StoredTable.h"
#include "dbase/system/bytes.h"
#include "dbase/system/error.h"
#include "dbase/table/bulk_loader.h"
#include "dbase/table/table.h"
#include "support/LockPatience.h"
#include "support/TemporaryFolder.h"

namespace {

using namespace dbase;
using namespace dbase::test;

class CheckTest : public ::testing::Test {
protected:
    // Offsets in a record, which begins with its deletion flag.
    static constexpr std::size_t nombreAt = 1, numAt = 31, altaAt = 37, menorAt = 45;

    static std::vector<TagDefinition> tags() {
        return {{.name = "NOMBRE", .expression = "NOMBRE"},
                {.name = "NUMDES", .expression = "NUM", .descending = true},
                {.name = "SOLO", .expression = "LEFT(NOMBRE,1)", .unique = true},
                {.name = "PARTE", .expression = "NOMBRE", .condition = "NUM>50"}};
    }
    CheckTest() {
        const MemoryTable stored({.name = "COMPRUEBA",
                                  .columns = {{"NOMBRE", ColumnType::Character, 30, 0, 0},
                                              {"NUM", ColumnType::Numeric, 6, 0, 0},
                                              {"ALTA", ColumnType::Date, 8, 0, 0},
                                              {"MENOR", ColumnType::Logical, 1, 0, 0}},
                                  .tags = tags()});
        const auto opened = stored.open();
        for (int i = 0; i < 100; ++i) {
            opened->append(makeRecord(opened->schema(),
                                      {std::string(1, static_cast<char>('A' + i % 5)) + std::to_string(i),
                                       std::to_string(i), "20240229", i % 2 == 0 ? "T" : "F"}));
        }
        table = stored.records->bytes;
        index = stored.index->bytes;
        schema = opened->schema();
    }

    [[nodiscard]] std::string path() const { return folder / "COMPRUEBA.DBF"; }
    [[nodiscard]] std::string indexPath() const { return folder / "COMPRUEBA.MDX"; }
    [[nodiscard]] std::size_t recordAt(RecordNumber number) const {
        return schema.headerLength + (number - std::size_t{1}) * schema.recordLength;
    }
    [[nodiscard]] std::size_t tagHeaderAt(std::size_t i) const {
        return load32(index.data() + mdx::tagTable + (i + 1) * mdx::tagEntrySize) * pageBytes;
    }
    [[nodiscard]] std::size_t firstLeafAt(std::size_t i) const {
        return load32(index.data() + tagHeaderAt(i) + mdx::firstLeaf) * pageBytes;
    }

    /// Offset of the n-th entry, record number and key, in a tag's first leaf.
    [[nodiscard]] std::size_t itemAt(std::size_t i, std::size_t item) const {
        return firstLeafAt(i) + mdx::items + item * load16(index.data() + tagHeaderAt(i) + mdx::itemLength);
    }
    void putText(RecordNumber number, std::size_t place, std::string_view text) {
        std::ranges::copy(text, table.begin() + static_cast<std::ptrdiff_t>(recordAt(number) + place));
    }

    void putOnDisk() const {
        writeFile(path(), table);
        writeFile(indexPath(), index);
    }
    /// Causes three findings in each record up to this one.
    void spoilRecords(RecordNumber last) {
        for (RecordNumber number = 1; number <= last; ++number) {
            for (const std::size_t place : {std::size_t{0}, numAt, menorAt}) {
                table[recordAt(number) + place] = 'x';
            }
        }
    }
    void expectTooManyFindings() const {
        putOnDisk();
        const CheckResult result = checkTable(path());
        EXPECT_EQ(result.findings.size(), 200U);
        EXPECT_TRUE(result.truncated);
        EXPECT_EQ(result.findings.front().place, "registro 1");
    }
    /// Expects a finding at that place with that text, and that no byte was changed.
    void expectFinding(const std::string& place, const std::string& text) const {
        putOnDisk();
        const CheckResult result = checkTable(path());
        EXPECT_TRUE(std::any_of(result.findings.begin(), result.findings.end(), [&](const Finding& finding) {
            return finding.place.find(place) != std::string::npos &&
                   finding.text.find(text) != std::string::npos;
        })) << findingsOf(result);
        EXPECT_EQ(readFile(path()), table);
        EXPECT_EQ(readFile(indexPath()), index);
    }
    void expectMended() const {
        reindexTable(path(), tags());
        EXPECT_EQ(findings(path()), "");
        EXPECT_EQ(Table::open(path())->tagNames(),
                  (std::vector<std::string>{"NOMBRE", "NUMDES", "SOLO", "PARTE"}));
    }

    Bytes table, index;
    Schema schema;
    TemporaryFolder folder;
};

TEST_F(CheckTest, ASoundTableHasNoFindings) {
    putOnDisk();
    const CheckResult result = checkTable(path());
    EXPECT_EQ(findingsOf(result), "");
    EXPECT_EQ(result.records, 100U);
    EXPECT_EQ(result.tags, 4U);
    EXPECT_FALSE(result.truncated);
}

TEST(CheckNotes, NumbersBetweenZeroAndATenthStandBeforeZero) {
    const auto notesOf = [](const std::vector<std::string>& numbers) {
        const TemporaryFolder folder;
        createTable(folder.path(), {.name = "NUMEROS",
                                    .columns = {{"NUM", ColumnType::Numeric, 8, 3, 0}},
                                    .tags = {{.name = "NUM", .expression = "NUM"}}});
        {
            const auto opened = Table::open(folder / "NUMEROS.DBF");
            for (const std::string& number : numbers) {
                opened->append(makeRecord(opened->schema(), {number}));
            }
        }
        const CheckResult result = checkTable(folder / "NUMEROS.DBF");
        EXPECT_EQ(findingsOf(result), "");
        return result.notes.size();
    };
    EXPECT_EQ(notesOf({"0", "0.1", "-0.05", "7"}), 0U);
    EXPECT_EQ(notesOf({"0", "0.05", "0.001", "7"}), 1U);
}

TEST_F(CheckTest, FindsAHeaderCountBeyondTheFile) {
    store32(table.data() + 4, 200);
    expectFinding("cabecera", "200 registros");
    expectMended();
}

TEST_F(CheckTest, FindsBytesAfterTheLastRecord) {
    table.insert(table.end(), 7, 'x');
    expectFinding("final", "sobran 7 bytes");
    expectMended();
}

TEST_F(CheckTest, CountsOneByteInTheSingular) {
    table.insert(table.end(), 1, 'x');
    expectFinding("final", "sobra 1 byte");
    expectMended();
}

TEST_F(CheckTest, FindsAnOddDeletionMark) {
    table[recordAt(5)] = 'x';
    expectFinding("registro 5", "borrado");
}

TEST_F(CheckTest, AcceptsTheDeletionMarkOfAnotherEnginesPacking) {
    table[recordAt(1)] = 0x1A;
    putOnDisk();
    EXPECT_EQ(findings(path()), "");
}

TEST_F(CheckTest, FindsContentThatIsNotOfItsType) {
    table[recordAt(3) + numAt] = 'x';
    expectFinding("registro 3, columna NUM", "tipo");
    table[recordAt(4) + altaAt] = 'x';
    expectFinding("registro 4, columna ALTA", "tipo");
    table[recordAt(6) + menorAt] = 'Q';
    expectFinding("registro 6, columna MENOR", "tipo");
}

TEST_F(CheckTest, AcceptsOverflownAndBlankValues) {
    putText(100, altaAt, std::string(9, ' '));
    table[recordAt(99) + menorAt] = '?';
    putText(1, numAt, std::string(6, '\0')); // the number was 0 before
    putOnDisk();
    EXPECT_EQ(findings(path()), "");
}

TEST_F(CheckTest, AcceptsWhatOthersWriteForNothing) {
    putText(100, altaAt, std::string(8, '0'));
    putOnDisk();
    EXPECT_EQ(findings(path()), "") << "a date of zeros";
}

TEST_F(CheckTest, AcceptsANumberThatDidNotFit) {
    MemoryTable stored(
        {.name = "RELLENO",
         .columns = {{"NUM", ColumnType::Numeric, 6, 0, 0}, {"FLO", ColumnType::Float, 8, 2, 0}},
         .tags = {{.name = "NUM", .expression = "NUM"}}});
    const auto opened = stored.open();
    opened->append(makeRecord(opened->schema(), {"******", "    1.50"}));
    EXPECT_EQ(stored.findings(), "");
    opened->append(makeRecord(opened->schema(), {"1", "x"}));
    EXPECT_NE(stored.findings().find("columna FLO"), std::string::npos);
}

TEST_F(CheckTest, FindsATagThatIsMissing) {
    putOnDisk();
    std::vector<TagDefinition> known = tags();
    EXPECT_EQ(findingsOf(checkTable(path(), {}, known)), "");
    known.push_back({.name = "OTRO", .expression = "NUM"});
    EXPECT_NE(findingsOf(checkTable(path(), {}, known)).find("falta el tag OTRO"), std::string::npos);
}

TEST_F(CheckTest, FindsAMissingIndex) {
    putOnDisk();
    std::filesystem::remove(indexPath());
    EXPECT_NE(findings(path()).find("falta el .MDX"), std::string::npos);
    expectMended();
}

TEST_F(CheckTest, FindsAnIndexThatTheTableDoesNotName) {
    table[28] = 0; // the flag for an index
    expectFinding("cabecera", "no dice que haya");
    expectMended();
}

TEST_F(CheckTest, FindsTheMarkOfADeadWriter) {
    store32(index.data() + mdx::stamp + 8, 1);
    expectFinding("cabecera", "mientras escribía");
    expectMended();
}

TEST_F(CheckTest, FindsAnotherLanguageByte) {
    index[mdx::languageDriver] = 0x03;
    expectFinding("cabecera", "idioma");
    expectMended();
}

TEST_F(CheckTest, FindsAWrongPageCount) {
    store32(index.data() + mdx::pageCount, 1000);
    expectFinding("cabecera", "1000 páginas");
    expectMended();
}

TEST_F(CheckTest, FindsAChangedKey) {
    table[recordAt(7) + nombreAt] = 'Z'; // as a program does that knows no index
    expectFinding("tag NOMBRE", "registro 7");
    expectMended();
}

TEST_F(CheckTest, FindsAChangeInAUniqueAndInAConditionalTag) {
    table[recordAt(1) + nombreAt] = 'Z';
    expectFinding("tag SOLO", "registro 1");
    putText(90, numAt, "     1");
    expectFinding("tag PARTE", "registro 90 no cumple");
    putText(2, numAt, "    99");
    expectFinding("tag PARTE", "falta el registro 2");
    expectMended();
}

TEST_F(CheckTest, FindsARecordWithoutEntryAndOneWithTwo) {
    store32(index.data() + itemAt(0, 0), load32(index.data() + itemAt(0, 1)));
    expectFinding("tag NOMBRE", "dos veces");
    expectFinding("tag NOMBRE", "falta el registro");
    expectMended();
}

TEST_F(CheckTest, FindsKeysOutOfOrder) {
    const auto first = index.begin() + static_cast<std::ptrdiff_t>(itemAt(0, 0));
    const auto second = index.begin() + static_cast<std::ptrdiff_t>(itemAt(0, 1));
    std::swap_ranges(first, second, second);
    expectFinding("tag NOMBRE", "no están en orden");
    expectMended();
}

TEST_F(CheckTest, FindsASeparatorThatLies) {
    const std::size_t root = load32(index.data() + tagHeaderAt(0)) * pageBytes;
    ASSERT_NE(root, firstLeafAt(0));
    index[root + mdx::items + 4] = '!';
    expectFinding("tag NOMBRE", "separador");
    expectMended();
}

TEST_F(CheckTest, FindsAnEntryOfNoRecord) {
    store32(index.data() + firstLeafAt(0) + mdx::items, 5000);
    expectFinding("tag NOMBRE", "5000");
    expectMended();
}

TEST_F(CheckTest, FindsAKeyTwiceInAUniqueTag) {
    index[itemAt(2, 1) + 4] = index[itemAt(2, 0) + 4]; // the key of one character, after the record number
    expectFinding("tag SOLO", "clave repetida");
    expectMended();
}

TEST_F(CheckTest, FindsAnEmptyLeaf) {
    std::fill_n(index.begin() + static_cast<std::ptrdiff_t>(firstLeafAt(0)), 1024, '\0');
    expectFinding("tag NOMBRE", "hoja vacía");
    expectMended();
}

TEST_F(CheckTest, FindsAFreeBlockThatHoldsKeys) {
    const std::size_t at = index.size();
    index.resize(at + 1024);
    store32(index.data() + at, 3);
    store32(index.data() + mdx::freeList, static_cast<std::uint32_t>(at / pageBytes));
    store32(index.data() + mdx::pageCount, static_cast<std::uint32_t>(index.size() / pageBytes));
    expectFinding("página", "libre con claves");
    expectMended();
}

TEST_F(CheckTest, FindsARaggedEndOfTheIndex) {
    index.resize(index.size() + 100);
    expectFinding("cabecera", "páginas");
    expectMended();
}

TEST_F(CheckTest, FindsAnIndexTooLargeForItsFormat) {
    putOnDisk();
    std::filesystem::resize_file(indexPath(), maxFileSize);
    EXPECT_NE(findings(path()).find("2 GiB"), std::string::npos);
}

TEST_F(CheckTest, FindingsStopAtABearableNumber) {
    spoilRecords(100);
    expectTooManyFindings();
}

TEST_F(CheckTest, FindingsStopInTheMiddleOfATree) {
    for (std::size_t i = 0; i < 4; ++i) {
        for (std::size_t item = 0; item < 5; ++item) {
            store32(index.data() + itemAt(i, item), 5000);
        }
    }
    spoilRecords(64); // nearly as many findings as are reported
    expectTooManyFindings();
}

TEST_F(CheckTest, ReportsItsProgressThroughManyRecords) {
    createTable(folder.path(), {.name = "MUCHOS",
                                .columns = {{"C", ColumnType::Character, 2, 0, 0}},
                                .tags = {{.name = "C", .expression = "C"}}});
    BulkLoader loader(folder / "MUCHOS.DBF", BulkLoader::Mode::Append);
    for (int i = 0; i < 70'000; ++i) {
        loader.add(makeRecord(loader.schema(), {std::to_string(i % 100)}));
    }
    loader.finish();
    std::vector<std::uint64_t> told;
    const CheckResult result =
        checkTable(folder / "MUCHOS.DBF", [&](std::uint64_t done, std::uint64_t total) {
            EXPECT_EQ(total, 70'000U);
            told.push_back(done);
        });
    EXPECT_EQ(findingsOf(result), "");
    EXPECT_EQ(told, (std::vector<std::uint64_t>{65'536, 65'536})) << "in the records and in the tag";
}

TEST_F(CheckTest, FindsTwoTreesThatShareAPage) {
    store32(index.data() + tagHeaderAt(3), load32(index.data() + tagHeaderAt(0)));
    expectFinding("tag PARTE", "dos veces");
    expectMended();
}

TEST_F(CheckTest, ADamagedHeaderIsAFindingAndMendedFromTheGivenTags) {
    std::fill(index.begin(), index.end(), '\0');
    expectFinding("índice", "cabecera");
    expectMended();
    const Bytes bytes = readFile(path());
    EXPECT_EQ(bytes[32 + 31], 1) << "a column that is a tag's key";
    EXPECT_EQ(bytes[96 + 31], 0);
}

TEST_F(CheckTest, ALostIndexOfAnUnknownTableIsNotInvented) {
    putOnDisk();
    std::filesystem::remove(indexPath());
    const Error error = errorOf([&] { reindexTable(path()); });
    EXPECT_EQ(error.code(), ErrorCode::BadIndex);
    EXPECT_FALSE(std::filesystem::exists(indexPath()));
    EXPECT_EQ(readFile(path()), table);
}

TEST_F(CheckTest, ATableThatIsNoneIsAFinding) {
    table.assign(500, 'x');
    expectFinding("cabecera", "dBase");
}

TEST_F(CheckTest, WaitsForAWriter) {
    putOnDisk();
    const auto writer = openFile(indexPath(), OpenMode::ReadWrite);
    ASSERT_TRUE(writer->tryLock(structureLock, LockKind::Exclusive));
    {
        const ambrel::test::LockPatience noPatience(std::chrono::milliseconds(0));
        EXPECT_EQ(errorOf([&] { (void)checkTable(path()); }).code(), ErrorCode::LockTimeout);
    }
    writer->unlock(structureLock);
    EXPECT_EQ(findings(path()), "");
}

TEST_F(CheckTest, ReportsItsProgress) {
    putOnDisk();
    std::uint64_t last = 0;
    reindexTable(path(), {}, [&](std::uint64_t done, std::uint64_t total) {
        EXPECT_GE(done, last);
        EXPECT_LE(done, total);
        last = done;
    });
    EXPECT_EQ(last, 400U);
}

} // namespace
