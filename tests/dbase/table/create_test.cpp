// New tables, and new files in place of old ones.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include <sys/stat.h>

#include "dbase/mdx/index_layout.h"
#include "dbase/support/ChildProcess.h"
#include "dbase/support/StoredTable.h"
#include "dbase/system/databases.h"
#include "dbase/system/error.h"
#include "dbase/table/check.h"
#include "dbase/table/table.h"
#include "dbase/table/table_definition.h"
#include "dbase/table/table_replacement.h"
#include "support/FileSizeLimit.h"
#include "support/TemporaryFolder.h"

namespace {

using namespace dbase;
using namespace dbase::test;
namespace fs = std::filesystem;

class CreateTest : public ::testing::Test {
protected:
    static TableDefinition definition() {
        return {.name = "NUEVA",
                .columns = {{"CODIGO", ColumnType::Character, 5, 0, 0},
                            {"GRUPO", ColumnType::Numeric, 6, 0, 0},
                            {"ALTA", ColumnType::Date, 8, 0, 0},
                            {"MENOR", ColumnType::Logical, 1, 0, 0}},
                .tags = {{.name = "CODIGO", .expression = "CODIGO"},
                         {.name = "DOS", .expression = "CODIGO+DTOS(ALTA)"}},
                .languageDriver = LanguageDriver::AnsiUs};
    }
    [[nodiscard]] std::string path() const { return folder_ / "NUEVA.DBF"; }
    [[nodiscard]] std::string indexPath() const { return folder_ / "NUEVA.MDX"; }
    [[nodiscard]] std::vector<std::string> files() const {
        std::vector<std::string> names;
        for (const fs::directory_entry& entry : fs::directory_iterator(folder_.path())) {
            names.push_back(entry.path().filename().string());
        }
        std::sort(names.begin(), names.end());
        return names;
    }
    void addRow() const {
        const auto table = Table::open(path());
        table->append(makeRecord(table->schema(), {"28079", "13"}));
    }

    TemporaryFolder folder_;
};

TEST_F(CreateTest, AnErrorNamesTheTableAndNotItsTemporaryFile) {
    TableDefinition wrong = definition();
    wrong.columns.front().name = "no vale";
    const Error refused = errorOf([&] { createTable(folder_.path(), wrong); });
    EXPECT_EQ(refused.file(), path());
    EXPECT_TRUE(std::string(refused.what()).starts_with(path() + ": el nombre")) << refused.what();
    for (const rlim_t most : {rlim_t{50}, rlim_t{2500}}) {
        const ambrel::test::FileSizeLimit limit(most);
        const Error full = errorOf([&] { createTable(folder_.path(), definition()); });
        EXPECT_EQ(full.code(), ErrorCode::DiskFull);
        EXPECT_TRUE(full.file() == path() || full.file() == indexPath()) << full.what();
        EXPECT_EQ(std::string(full.what()).find(".nuevo"), std::string::npos) << full.what();
    }
    EXPECT_TRUE(files().empty());
}

TEST_F(CreateTest, ANewTableIsEmptySoundAndWritable) {
    createTable(folder_.path(), definition());
    EXPECT_EQ(files(), (std::vector<std::string>{"NUEVA.DBF", "NUEVA.MDX"}));
    EXPECT_EQ(findings(path()), "");
    const auto table = Table::open(path());
    EXPECT_FALSE(table->isReadOnly()) << table->readOnlyReason();
    EXPECT_EQ(table->records().recordCount(), 0U);
    EXPECT_EQ(table->tagNames(), (std::vector<std::string>{"CODIGO", "DOS"}));
    EXPECT_TRUE(table->schema().hasProductionIndex);
    EXPECT_EQ(table->schema().languageDriver, 0x57);
    EXPECT_EQ(table->schema().version, 0x03);
    EXPECT_EQ(table->schema().recordLength, 21);
}

TEST_F(CreateTest, ColumnsThatAreATagsKeyAreMarkedInTheHeader) {
    createTable(folder_.path(), definition());
    const Bytes bytes = readFile(path());
    EXPECT_EQ(bytes[32 + 31], 1);
    EXPECT_EQ(bytes[64 + 31], 0);
    EXPECT_EQ(bytes[96 + 31], 0) << "a part of a key only";
}

TEST_F(CreateTest, ATableWithoutTagsHasNoIndex) {
    TableDefinition plain = definition();
    plain.tags.clear();
    createTable(folder_.path(), plain);
    EXPECT_EQ(files(), std::vector<std::string>{"NUEVA.DBF"});
    EXPECT_EQ(findings(path()), "");
    addRow();
    EXPECT_EQ(findings(path()), "");
}

TEST_F(CreateTest, AnExistingTableIsNotOverwritten) {
    createTable(folder_.path(), definition());
    addRow();
    const Bytes before = readFile(path());
    const Error error = errorOf([&] { createTable(folder_.path(), definition()); });
    EXPECT_EQ(error.code(), ErrorCode::Exists);
    EXPECT_EQ(error.file(), path());
    EXPECT_EQ(readFile(path()), before);
}

TEST_F(CreateTest, AnExistingTableOfOtherLetterCaseIsNotOverwritten) {
    folder_.write("nueva.dbf", "x");
    EXPECT_EQ(errorOf([&] { createTable(folder_.path(), definition()); }).code(), ErrorCode::Exists);
}

TEST_F(CreateTest, ReplacingLeavesOnlyTheNewTable) {
    createTable(folder_.path(), definition());
    addRow();
    TableDefinition other = definition();
    other.tags.pop_back();
    createTable(folder_.path(), other, IfExists::Replace);
    EXPECT_EQ(files(), (std::vector<std::string>{"NUEVA.DBF", "NUEVA.MDX"}));
    EXPECT_EQ(findings(path()), "");
    const auto table = Table::open(path());
    EXPECT_EQ(table->records().recordCount(), 0U);
    EXPECT_EQ(table->tagNames(), std::vector<std::string>{"CODIGO"});
}

TEST_F(CreateTest, ReplacingByATableWithoutTagsRemovesTheIndex) {
    createTable(folder_.path(), definition());
    TableDefinition plain = definition();
    plain.tags.clear();
    createTable(folder_.path(), plain, IfExists::Replace);
    EXPECT_EQ(files(), std::vector<std::string>{"NUEVA.DBF"});
}

TEST_F(CreateTest, ReplacingKeepsTheLetterCaseOfTheFiles) {
    createTable(folder_.path(), definition());
    fs::rename(path(), folder_ / "Nueva.dbf");
    fs::rename(indexPath(), folder_ / "nueva.Mdx");
    createTable(folder_.path(), definition(), IfExists::Replace);
    EXPECT_EQ(files(), (std::vector<std::string>{"Nueva.dbf", "nueva.Mdx"}));
    EXPECT_EQ(findings(folder_ / "Nueva.dbf"), "");
}

TEST_F(CreateTest, AnIndexThatLostItsTableIsReplaced) {
    createTable(folder_.path(), definition());
    addRow();
    fs::remove(path());
    fs::rename(indexPath(), folder_ / "nueva.mdx");
    createTable(folder_.path(), definition());
    EXPECT_EQ(files().size(), 2U);
    EXPECT_EQ(findings(path()), "");
    TableDefinition plain = definition();
    plain.tags.clear();
    fs::remove(path());
    createTable(folder_.path(), plain);
    EXPECT_EQ(files(), std::vector<std::string>{"NUEVA.DBF"});
    EXPECT_EQ(findings(path()), "");
}

TEST_F(CreateTest, AnOpenTableIsNotReplaced) {
    createTable(folder_.path(), definition());
    addRow();
    const auto table = Table::open(path());
    const Error error = errorOf([&] { createTable(folder_.path(), definition(), IfExists::Replace); });
    EXPECT_EQ(error.code(), ErrorCode::LockTimeout);
    EXPECT_EQ(table->records().recordCount(), 1U);
    EXPECT_EQ(files(), (std::vector<std::string>{"NUEVA.DBF", "NUEVA.MDX"}));
}

TEST_F(CreateTest, ATableThatAnotherProcessHasOpenIsNotReplaced) {
    createTable(folder_.path(), definition());
    const auto other = openInAnotherProcess(path());
    EXPECT_EQ(errorOf([&] { createTable(folder_.path(), definition(), IfExists::Replace); }).code(),
              ErrorCode::LockTimeout);
    other->tell();
    EXPECT_EQ(other->join(), 0);
    createTable(folder_.path(), definition(), IfExists::Replace);
}

TEST_F(CreateTest, AProcessThatWaitsToOpenGetsTheNewTable) {
    createTable(folder_.path(), definition());
    addRow();
    ChildProcess other(
        [&](const ChildProcess::Link& link) { // before the replacement, whose lock it would share
            link.await();
            link.tell();
            return static_cast<int>(Table::open(path())->tagNames().size());
        });
    auto replacement = std::make_unique<TableReplacement>(path());
    other.tell();
    other.await();
    MemoryTable fresh([] {
        TableDefinition one = definition();
        one.tags.pop_back();
        return one;
    }());
    replacement->makeTable()->write(0, fresh.records->bytes);
    replacement->makeIndex()->write(0, fresh.index->bytes);
    replacement->commit();
    replacement.reset();
    EXPECT_EQ(other.join(), 1);
}

TEST_F(CreateTest, AProcessThatWaitsToReindexWorksOnTheNewTable) {
    createTable(folder_.path(), definition());
    addRow();
    ChildProcess other([&](const ChildProcess::Link& link) {
        link.await();
        link.tell();
        reindexTable(path());
        return 0;
    });
    {
        TableReplacement replacement(path());
        other.tell();
        other.await();
        MemoryTable fresh(definition());
        replacement.makeTable()->write(0, fresh.records->bytes);
        replacement.makeIndex()->write(0, fresh.index->bytes);
        replacement.commit();
    }
    EXPECT_EQ(other.join(), 0);
    EXPECT_EQ(findings(path()), "");
    EXPECT_EQ(order(*Table::open(path()), "CODIGO").size(), 0U);
}

TEST_F(CreateTest, WithoutCommitTheNewFilesVanish) {
    createTable(folder_.path(), definition());
    {
        TableReplacement replacement(path());
        replacement.makeTable()->write(0, Bytes(10));
        replacement.makeIndex()->write(0, Bytes(10));
    }
    EXPECT_EQ(files(), (std::vector<std::string>{"NUEVA.DBF", "NUEVA.MDX"}));
    EXPECT_EQ(findings(path()), "");
}

/// The machine stops after the first of the two renames.
TEST_F(CreateTest, ANewTableBesideTheOldIndexIsMended) {
    createTable(folder_.path(), definition());
    for (int i = 0; i < 5; ++i) {
        addRow();
    }
    MemoryTable fresh(definition());
    {
        const auto table = fresh.open();
        for (int i = 0; i < 5; ++i) {
            table->append(makeRecord(table->schema(), {"1000" + std::to_string(i)}));
        }
    }
    Bytes oldIndex = readFile(indexPath());
    oldIndex[mdx::stamp + mdx::stampMark] = 1;
    writeFile(indexPath(), oldIndex);
    writeFile(path(), fresh.records->bytes);
    EXPECT_EQ(Table::open(path())->records().recordCount(), 5U);
    EXPECT_EQ(findings(path()), "");
}

TEST_F(CreateTest, ImpossibleDefinitionsLeaveNothingBehind) {
    const auto refuse = [&](const std::function<void(TableDefinition&)>& spoil) {
        TableDefinition spoilt = definition();
        spoil(spoilt);
        const Error error = errorOf([&] { createTable(folder_.path(), spoilt); });
        EXPECT_TRUE(files().empty());
        return error.code();
    };
    EXPECT_EQ(refuse([](TableDefinition& d) { d.columns.clear(); }), ErrorCode::BadTable);
    EXPECT_EQ(refuse([](TableDefinition& d) { d.columns[0].width = 255; }), ErrorCode::BadTable);
    EXPECT_EQ(refuse([](TableDefinition& d) { d.columns[0].name = "ÑAME"; }), ErrorCode::BadTable);
    EXPECT_EQ(refuse([](TableDefinition& d) { d.columns[1].name = "CODIGO"; }), ErrorCode::BadTable);
    EXPECT_EQ(refuse([](TableDefinition& d) { d.tags[0].expression = "NOHAY"; }), ErrorCode::BadExpression);
    EXPECT_EQ(refuse([](TableDefinition& d) { d.tags[0].expression = "MENOR"; }), ErrorCode::BadExpression);
    EXPECT_EQ(refuse([](TableDefinition& d) { d.tags[0].expression = "SPACE(101)"; }),
              ErrorCode::BadExpression);
    EXPECT_EQ(refuse([](TableDefinition& d) { d.tags[0].condition = "CODIGO"; }), ErrorCode::BadExpression);
    EXPECT_EQ(refuse([](TableDefinition& d) { d.tags[0].name = "ONCE_LETRAS"; }), ErrorCode::BadExpression);
    EXPECT_EQ(refuse([](TableDefinition& d) { d.tags[1].name = "CODIGO"; }), ErrorCode::BadExpression);
    EXPECT_EQ(refuse([](TableDefinition& d) { d.tags.resize(48, {.name = "T", .expression = "CODIGO"}); }),
              ErrorCode::BadIndex);
}

TEST_F(CreateTest, FortySevenTagsAreTheMost) {
    TableDefinition many = definition();
    many.tags.clear();
    for (int i = 0; i < 47; ++i) {
        many.tags.push_back({.name = "T" + std::to_string(i * 29 % 47), .expression = "CODIGO"});
    }
    createTable(folder_.path(), many);
    for (int i = 0; i < 20; ++i) {
        addRow();
    }
    EXPECT_EQ(Table::open(path())->tagNames().size(), 47U);
    EXPECT_EQ(findings(path()), "");
}

TEST_F(CreateTest, AFolderThatIsNotThereIsNamed) {
    const Error error = errorOf([&] { createTable(folder_ / "NO", definition()); });
    EXPECT_EQ(error.code(), ErrorCode::NotFound);
    EXPECT_EQ(error.file(), folder_ / "NO");
}

TEST_F(CreateTest, TheIndexNamesItsTable) {
    createTable(folder_.path(), definition());
    const Bytes index = readFile(indexPath());
    EXPECT_EQ(std::string(index.data() + mdx::tableName), "NUEVA");
}

} // namespace
