// A copy of a table that is changed row by row and takes its place.
#include "dbase/table/table_revision.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <random>

#include "dbase/mdx/index_layout.h"
#include "dbase/support/StoredTable.h"
#include "dbase/system/error.h"
#include "dbase/table/bulk_loader.h"
#include "dbase/table/table_replacement.h"
#include "support/Seed.h"
#include "support/TemporaryFolder.h"

namespace {

using namespace dbase;
using namespace dbase::test;
using ambrel::test::seedOfThisRun;
namespace fs = std::filesystem;

class RevisionTest : public ::testing::Test {
protected:
    explicit RevisionTest(std::vector<TagDefinition> tags = {{.name = "NOMBRE", .expression = "NOMBRE"},
                                                             {.name = "NUM", .expression = "NUM"}}) {
        createTable(folder_.path(), {.name = "CALLES",
                                     .columns = {{"NOMBRE", ColumnType::Character, 20, 0, 0},
                                                 {"NUM", ColumnType::Numeric, 6, 0, 0}},
                                     .tags = std::move(tags)});
    }
    [[nodiscard]] std::string path() const { return folder_ / "CALLES.DBF"; }
    [[nodiscard]] std::string indexPath() const { return folder_ / "CALLES.MDX"; }
    static Bytes row(const Schema& schema, int number) {
        return makeRecord(schema, {"CALLE " + std::to_string(number * 7919 % 10007), std::to_string(number)});
    }
    void fill(int rows) {
        BulkLoader loader(path(), BulkLoader::Mode::Append);
        for (int number = 1; number <= rows; ++number) {
            rows_.push_back(row(loader.schema(), number));
            loader.add(rows_.back());
        }
        loader.finish();
    }
    /// Changes a row in the revision and in the expected ones.
    void change(TableRevision& revision, RecordNumber number, const Bytes& record) {
        revision.change(number, record);
        rows_[number - 1] = record;
    }
    void add(TableRevision& revision, const Bytes& record) {
        rows_.push_back(record);
        EXPECT_EQ(revision.add(record), rows_.size());
    }
    void erase(TableRevision& revision, RecordNumber number) {
        revision.erase(number);
        rows_[number - 1][0] = '*';
    }
    void expectRows() const {
        const auto table = Table::open(path());
        ASSERT_EQ(table->records().recordCount(), rows_.size());
        for (RecordNumber number = 1; number <= rows_.size(); ++number) {
            EXPECT_EQ(storedRecord(*table, number), rows_[number - 1]) << number;
        }
        EXPECT_FALSE(table->index()->stamp().inUpdate);
        EXPECT_EQ(findings(path()), "");
    }
    [[nodiscard]] std::vector<std::string> files() const {
        std::vector<std::string> names;
        for (const fs::directory_entry& entry : fs::directory_iterator(folder_.path())) {
            names.push_back(entry.path().filename().string());
        }
        std::ranges::sort(names);
        return names;
    }
    static std::size_t differences(const Bytes& a, const Bytes& b) {
        std::size_t pages = 0;
        for (std::size_t at = 0; at < std::max(a.size(), b.size()); at += 512) {
            const auto page = [&](const Bytes& bytes) {
                return std::span(bytes).subspan(
                    std::min(at, bytes.size()),
                    std::min<std::size_t>(512, bytes.size() - std::min(at, bytes.size())));
            };
            pages += std::ranges::equal(page(a), page(b)) ? 0 : 1;
        }
        return pages;
    }

    TemporaryFolder folder_;
    std::vector<Bytes> rows_; // expected, from number 1 on
};

TEST_F(RevisionTest, TakesThePlaceOfItsTableWithItsRowsChangedAddedAndErased) {
    fill(300);
    {
        TableReplacement files(path());
        TableRevision revision(files);
        EXPECT_EQ(revision.recordCount(), 300U);
        change(revision, 7, row(revision.schema(), 5007));
        erase(revision, 8);
        add(revision, row(revision.schema(), 5008));
        change(revision, 301, row(revision.schema(), 5009));
        revision.finish();
        files.commit();
    }
    expectRows();
    EXPECT_EQ(files(), (std::vector<std::string>{"CALLES.DBF", "CALLES.MDX"}));
}

TEST_F(RevisionTest, ShowsItsRowsAsTheyAreChanged) {
    fill(20);
    TableReplacement files(path());
    TableRevision revision(files);
    const auto shown = [&](RecordNumber number) {
        const auto bytes = revision.row(number);
        return Bytes(bytes.begin(), bytes.end());
    };
    EXPECT_EQ(shown(3), rows_[2]);
    change(revision, 3, row(revision.schema(), 900));
    add(revision, row(revision.schema(), 901));
    erase(revision, 4);
    EXPECT_EQ(revision.recordCount(), 21U);
    for (const RecordNumber number : {3U, 4U, 5U, 21U}) {
        EXPECT_EQ(shown(number), rows_[number - 1]) << number;
    }
}

TEST_F(RevisionTest, WithoutItsCommitLeavesTheTableAndNoFilesOfItsOwn) {
    fill(20);
    const Bytes records = readFile(path()), index = readFile(indexPath());
    {
        TableReplacement files(path());
        TableRevision revision(files);
        revision.erase(1);
        EXPECT_EQ(readFile(path()), records);
        EXPECT_EQ(readFile(indexPath()), index);
        revision.finish();
    }
    EXPECT_EQ(readFile(path()), records);
    EXPECT_EQ(readFile(indexPath()), index);
    expectRows();
    EXPECT_EQ(files(), (std::vector<std::string>{"CALLES.DBF", "CALLES.MDX"}));
}

TEST_F(RevisionTest, ThatDoesNotFinishIsNotCommitted) {
    fill(20);
    TableReplacement files(path());
    { TableRevision(files).erase(1); }
    EXPECT_FALSE(fs::exists(files.newTableFile()));
    EXPECT_FALSE(fs::exists(files.newIndexFile()));
}

TEST_F(RevisionTest, OfFewRowsChangesFewPagesOfTheIndex) {
    fill(20000);
    const Bytes before = readFile(indexPath());
    {
        TableReplacement files(path());
        TableRevision revision(files);
        change(revision, 10000, row(revision.schema(), 3));
        revision.finish();
        files.commit();
    }
    EXPECT_LT(differences(before, readFile(indexPath())), 20U) << "of " << before.size() / 512;
    expectRows();
}

TEST_F(RevisionTest, OfManyRowsHasItsTagsBuiltAnew) {
    fill(2000);
    {
        TableReplacement files(path());
        TableRevision revision(files);
        for (RecordNumber number = 1; number <= 2000; ++number) {
            change(revision, number, row(revision.schema(), static_cast<int>(10000 - number)));
        }
        int steps = 0;
        revision.finish([&](std::uint64_t, std::uint64_t) { ++steps; });
        EXPECT_GT(steps, 0);
        files.commit();
    }
    expectRows();
}

TEST_F(RevisionTest, RefusesARowOfAnotherLengthAndGoesOn) {
    fill(20);
    {
        TableReplacement files(path());
        TableRevision revision(files);
        const Bytes tooShort(3, ' ');
        const Error error = errorOf([&] { revision.change(1, tooShort); });
        EXPECT_EQ(error.code(), ErrorCode::BadValue);
        EXPECT_EQ(error.file(), path());
        EXPECT_EQ(errorOf([&] { static_cast<void>(revision.add(tooShort)); }).code(), ErrorCode::BadValue);
        EXPECT_EQ(errorOf([&] { revision.erase(21); }).code(), ErrorCode::BadTable);
        change(revision, 2, row(revision.schema(), 77));
        revision.finish();
        files.commit();
    }
    expectRows();
}

TEST_F(RevisionTest, OfATableWhoseWriterDiedHasItsTagsRight) {
    fill(200);
    Bytes index = readFile(indexPath());
    index[mdx::stamp + mdx::stampMark] = 1;
    std::fill(index.end() - 512, index.end(), '\0');
    writeFile(indexPath(), index);
    {
        TableReplacement files(path());
        TableRevision revision(files);
        change(revision, 2, row(revision.schema(), 77));
        revision.finish();
        files.commit();
    }
    expectRows();
}

TEST_F(RevisionTest, InWhichAChangeHasFailedHasItsTagsBuiltAnew) {
    fill(200); // of which two changes alone are written into the tags
    // A program that knows no index has changed a row: the tag of its number does not have it.
    rows_[2] = withValue(Table::open(path())->schema(), rows_[2], "NUM", "  7777");
    Bytes records = readFile(path());
    std::ranges::copy(rows_[2], records.end() - 1 - 198 * static_cast<std::ptrdiff_t>(rows_[2].size()));
    writeFile(path(), records);
    {
        TableReplacement files(path());
        TableRevision revision(files);
        const Bytes wanted = row(revision.schema(), 900);
        EXPECT_EQ(errorOf([&] { revision.change(3, wanted); }).code(), ErrorCode::BadIndex);
        change(revision, 4, row(revision.schema(), 901));
        revision.finish();
        files.commit();
    }
    expectRows();
}

TEST_F(RevisionTest, OfATableThatMayOnlyBeReadIsRefused) {
    fill(20);
    Bytes records = readFile(path());
    records[29] = 0x14; // Spanish OEM, whose order of keys is unknown
    writeFile(path(), records);
    TableReplacement files(path());
    EXPECT_EQ(errorOf([&] { const TableRevision revision(files); }).code(), ErrorCode::ReadOnly);
    EXPECT_FALSE(fs::exists(files.newTableFile()));
    EXPECT_EQ(readFile(path()), records);
}

TEST_F(RevisionTest, NeedsATable) {
    TableReplacement files(folder_ / "OTRA.DBF");
    EXPECT_EQ(errorOf([&] { const TableRevision revision(files); }).code(), ErrorCode::NotFound);
}

/// Tags whose entries depend on other rows, or not every row has one.
class RevisionOfEveryTag : public RevisionTest {
protected:
    RevisionOfEveryTag()
        : RevisionTest({{.name = "NOMBRE", .expression = "UPPER(NOMBRE)"},
                        {.name = "NUM", .expression = "NUM", .descending = true},
                        {.name = "UNICO", .expression = "NOMBRE", .unique = true},
                        {.name = "ALTOS", .expression = "NUM", .condition = "NUM>5000"}}) {}
};

TEST_F(RevisionOfEveryTag, EndsWithRightTagsWhateverIsChanged) {
    std::mt19937 random(seedOfThisRun());
    const auto any = [&](std::size_t below) { return static_cast<int>(random() % below); };
    fill(3000);
    for (int round = 0; round < 6; ++round) {
        TableReplacement files(path());
        TableRevision revision(files);
        for (int step = 0, steps = 1 + any(400); step < steps; ++step) {
            const auto number = static_cast<RecordNumber>(1 + any(rows_.size()));
            const Bytes record = row(revision.schema(), any(40) * 250); // few names, so that many are equal
            switch (any(4)) {
            case 0:
                add(revision, record);
                break;
            case 1:
                erase(revision, number);
                break;
            default:
                change(revision, number, record);
            }
        }
        revision.finish();
        files.commit();
    }
    expectRows();
}

} // namespace
