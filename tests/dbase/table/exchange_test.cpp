// Several tables replaced together. What a stop leaves of it is in tests/resistance/exchange_cuts_test.cpp.
#include "dbase/table/table_exchange.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <thread>

#include <sys/stat.h>

#include "dbase/support/StoredTable.h"
#include "dbase/system/error.h"
#include "dbase/system/paths.h"
#include "dbase/table/bulk_loader.h"
#include "dbase/table/table_revision.h"
#include "support/FileSizeLimit.h"
#include "support/LockPatience.h"
#include "support/TemporaryFolder.h"

namespace {

using namespace dbase;
using namespace dbase::test;
using ambrel::test::LockPatience;
namespace fs = std::filesystem;

TableDefinition definition(const std::string& name) {
    return {
        .name = name,
        .columns = {{"CLAVE", ColumnType::Character, 8, 0, 0}, {"NOMBRE", ColumnType::Character, 30, 0, 0}},
        .tags = {{.name = "CLAVE", .expression = "CLAVE"}, {.name = "NOMBRE", .expression = "NOMBRE"}}};
}

class ExchangeTest : public ::testing::Test {
protected:
    ExchangeTest() {
        for (const char* const name : {"CALLES", "PUEBLOS"}) {
            createTable(folder_.path(), definition(name));
            const auto table = Table::open(path(name));
            table->append(row(table->schema(), "VIEJA"));
        }
    }

    [[nodiscard]] std::string path(const std::string& name) const { return folder_ / (name + ".DBF"); }
    [[nodiscard]] std::vector<std::string> paths() const {
        return {path("PUEBLOS"), path("CALLES"), path("ORIGEN")};
    }
    static Bytes row(const Schema& schema, const std::string& name) {
        return makeRecord(schema, {name.substr(0, 8), name});
    }
    static void load(BulkLoader& loader, const std::vector<std::string>& names) {
        for (const std::string& name : names) {
            loader.add(row(loader.schema(), name));
        }
        loader.finish();
    }
    void loadAll(TableExchange& exchange) const {
        for (const std::size_t present : {0U, 1U}) {
            BulkLoader loader(exchange.table(present));
            load(loader, {"NUEVA 1", "NUEVA 2"});
        }
        BulkLoader loader(exchange.table(2), definition("ORIGEN"));
        load(loader, {"NUEVA 3"});
    }
    [[nodiscard]] std::vector<std::string> namesIn(const std::string& table) const {
        const auto opened = Table::open(path(table));
        std::vector<std::string> names;
        for (const RecordNumber number : order(*opened, "NOMBRE")) {
            names.push_back(valueOf(opened->schema(), storedRecord(*opened, number), "NOMBRE"));
        }
        return names;
    }
    [[nodiscard]] std::vector<std::string> files() const {
        std::vector<std::string> names;
        for (const fs::directory_entry& entry : fs::directory_iterator(folder_.path())) {
            names.push_back(entry.path().filename().string());
        }
        std::ranges::sort(names);
        return names;
    }
    void expectOld() const {
        EXPECT_EQ(namesIn("CALLES"), std::vector<std::string>{"VIEJA"});
        EXPECT_EQ(namesIn("PUEBLOS"), std::vector<std::string>{"VIEJA"});
        EXPECT_EQ(files(), oldFiles_);
        expectSound({"CALLES", "PUEBLOS"});
    }
    void expectSound(const std::vector<std::string>& tables) const {
        for (const std::string& name : tables) {
            EXPECT_EQ(findings(path(name)), "");
        }
    }

    TemporaryFolder folder_;
    const std::vector<std::string> oldFiles_{"CALLES.DBF", "CALLES.MDX", "PUEBLOS.DBF", "PUEBLOS.MDX"};
};

TEST_F(ExchangeTest, ReplacesAllTablesAndCreatesThoseThatAreMissing) {
    {
        TableExchange exchange(paths());
        loadAll(exchange);
        exchange.commit();
    }
    EXPECT_EQ(namesIn("CALLES"), (std::vector<std::string>{"NUEVA 1", "NUEVA 2"}));
    EXPECT_EQ(namesIn("PUEBLOS"), (std::vector<std::string>{"NUEVA 1", "NUEVA 2"}));
    EXPECT_EQ(namesIn("ORIGEN"), std::vector<std::string>{"NUEVA 3"});
    expectSound({"CALLES", "PUEBLOS", "ORIGEN"});
    EXPECT_EQ(files(), (std::vector<std::string>{"CALLES.DBF", "CALLES.MDX", "ORIGEN.DBF", "ORIGEN.MDX",
                                                 "PUEBLOS.DBF", "PUEBLOS.MDX"}));
}

TEST_F(ExchangeTest, ReplacesTablesThatThreadsOfTheirOwnHaveSettled) {
    {
        TableExchange exchange(paths());
        std::vector<std::jthread> threads;
        for (const std::size_t table : {0U, 1U, 2U}) {
            threads.emplace_back([&exchange, table] { exchange.table(table).sumOld(); });
        }
        loadAll(exchange);
        threads.clear();
        for (const std::size_t table : {0U, 1U, 2U}) {
            threads.emplace_back([&exchange, table] { exchange.table(table).settle(); });
        }
        threads.clear();
        exchange.commit();
    }
    EXPECT_EQ(namesIn("CALLES"), (std::vector<std::string>{"NUEVA 1", "NUEVA 2"}));
    EXPECT_EQ(namesIn("ORIGEN"), std::vector<std::string>{"NUEVA 3"});
    expectSound({"CALLES", "PUEBLOS", "ORIGEN"});
}

TEST_F(ExchangeTest, WithoutItsCommitLeavesNothingOfSettledTables) {
    {
        TableExchange exchange(paths());
        loadAll(exchange);
        exchange.table(0).settle();
        exchange.table(2).settle();
    }
    expectOld();
}

TEST_F(ExchangeTest, WithoutItsCommitLeavesTheTablesAndNoFilesOfItsOwn) {
    const Bytes index = readFile(folder_ / "CALLES.MDX");
    {
        TableExchange exchange(paths());
        loadAll(exchange);
    }
    EXPECT_EQ(readFile(folder_ / "CALLES.MDX"), index);
    expectOld();
}

TEST_F(ExchangeTest, LeavesTablesAsTheyAreWhoseNewFilesWereNotMade) {
    {
        TableExchange exchange(paths());
        BulkLoader loader(exchange.table(0));
        load(loader, {"NUEVA"});
        exchange.commit();
    }
    EXPECT_EQ(namesIn("PUEBLOS"), std::vector<std::string>{"NUEVA"});
    EXPECT_EQ(namesIn("CALLES"), std::vector<std::string>{"VIEJA"});
    EXPECT_EQ(files(), oldFiles_);
}

TEST_F(ExchangeTest, WithoutAnyNewFilesChangesNothing) {
    const Bytes index = readFile(folder_ / "CALLES.MDX");
    TableExchange(paths()).commit();
    EXPECT_EQ(readFile(folder_ / "CALLES.MDX"), index);
    expectOld();
}

TEST_F(ExchangeTest, IsRefusedAtOnceWhileAnotherProgramHasOneOfTheTablesOpen) {
    const auto station = openInAnotherProcess(path("CALLES"));
    const Error error = errorOf([&] { const TableExchange exchange(paths()); });
    EXPECT_EQ(error.code(), ErrorCode::LockTimeout);
    EXPECT_EQ(error.file(), path("CALLES"));
    station->tell();
    station->join();
    expectOld();
}

TEST_F(ExchangeTest, KeepsOthersFromOpeningAndCreatingItsTables) {
    const LockPatience patience(std::chrono::milliseconds(20));
    TableExchange exchange(paths());
    for (const char* const name : {"CALLES", "PUEBLOS"}) {
        ChildProcess station([&](const ChildProcess::Link&) {
            return errorOf([&] { static_cast<void>(Table::open(path(name))); }).code() ==
                           ErrorCode::LockTimeout
                       ? 0
                       : 1;
        });
        EXPECT_EQ(station.join(), 0) << name;
    }
    EXPECT_EQ(errorOf([&] { createTable(folder_.path(), definition("ORIGEN")); }).code(),
              ErrorCode::LockTimeout);
}

TEST_F(ExchangeTest, OfTablesInSeveralFoldersIsRefused) {
    const TemporaryFolder other;
    createTable(other.path(), definition("LEJOS"));
    EXPECT_EQ(errorOf([&] {
                  TableExchange({path("CALLES"), other / "LEJOS.DBF"});
              }).code(),
              ErrorCode::BadState);
    EXPECT_EQ(errorOf([&] { TableExchange({path("CALLES"), path("CALLES")}); }).code(), ErrorCode::BadState);
    expectOld();
}

TEST_F(ExchangeTest, DoesNotTakeTheFilesOfALoaderThatDidNotFinish) {
    TableExchange exchange(paths());
    {
        BulkLoader loader(exchange.table(0));
        loader.add(row(loader.schema(), "A MEDIAS"));
    }
    {
        BulkLoader loader(exchange.table(1));
        load(loader, {"NUEVA"});
    }
    exchange.commit();
    EXPECT_EQ(namesIn("CALLES"), std::vector<std::string>{"NUEVA"});
    EXPECT_EQ(readFile(path("PUEBLOS")).size(), 32U + 2 * 32 + 1 + 39 + 1) << "one row";
    EXPECT_EQ(files(), oldFiles_);
}

TEST_F(ExchangeTest, AnExchangeOfTheTablesJustExchangedFindsThem) {
    for (const char* const name : {"UNA", "OTRA"}) {
        TableExchange exchange(paths());
        for (const std::size_t i : {0U, 1U, 2U}) {
            BulkLoader loader(exchange.table(i), definition(baseName(paths()[i])));
            load(loader, {name});
        }
        exchange.commit();
    }
    for (const char* const name : {"CALLES", "PUEBLOS", "ORIGEN"}) {
        EXPECT_EQ(namesIn(name), std::vector<std::string>{"OTRA"});
    }
    expectSound({"CALLES", "PUEBLOS", "ORIGEN"});
}

/// A table with many rows, of which a few are changed.
class RevisionInExchange : public ExchangeTest {
protected:
    static constexpr int rows = 400;

    RevisionInExchange() {
        BulkLoader loader(path("CALLES"), BulkLoader::Mode::Append);
        for (int number = 2; number <= rows; ++number) {
            loader.add(row(loader.schema(), "CALLE " + std::to_string(number)));
        }
        loader.finish();
    }
    static void revise(TableExchange& exchange, int added) {
        TableRevision revision(exchange.table(1));
        revision.change(200, row(revision.schema(), "OTRO NOMBRE"));
        revision.erase(300);
        for (int number = 1; number <= added; ++number) {
            revision.add(row(revision.schema(), "NUEVA " + std::to_string(number)));
        }
        revision.finish();
    }
    void expectRevised(std::size_t added) const {
        const std::vector<std::string> names = namesIn("CALLES");
        EXPECT_EQ(names.size(), rows + added); // with the deleted one
        EXPECT_EQ(std::ranges::count(names, "OTRO NOMBRE"), 1);
        EXPECT_EQ(std::ranges::count(names, "CALLE 200"), 0);
        EXPECT_EQ(std::ranges::count(names, "CALLE 201"), 1);
        EXPECT_EQ(storedRecord(*Table::open(path("CALLES")), 300).front(), deletedMark);
        expectSound({"CALLES"});
    }
    [[nodiscard]] static ino_t inodeOf(const std::string& path) {
        struct stat status = {};
        EXPECT_EQ(stat(path.c_str(), &status), 0);
        return status.st_ino;
    }
};

TEST_F(RevisionInExchange, OfAFewRowsIsMadeInTheTableItself) {
    const std::vector<std::string> its{path("CALLES"), folder_ / "CALLES.MDX"};
    const std::vector<ino_t> before{inodeOf(its[0]), inodeOf(its[1])};
    {
        TableExchange exchange(paths());
        revise(exchange, 5);
        EXPECT_LT(fs::file_size(exchange.table(1).newTableFile()), fs::file_size(its[0]));
        exchange.commit();
    }
    EXPECT_EQ((std::vector<ino_t>{inodeOf(its[0]), inodeOf(its[1])}), before);
    EXPECT_EQ(files(), oldFiles_);
    expectRevised(5);
    EXPECT_EQ(namesIn("PUEBLOS"), std::vector<std::string>{"VIEJA"});
}

TEST_F(RevisionInExchange, WithoutItsCommitLeavesEveryByteAsItWas) {
    const Bytes records = readFile(path("CALLES")), index = readFile(folder_ / "CALLES.MDX");
    {
        TableExchange exchange(paths());
        revise(exchange, 5);
        EXPECT_EQ(readFile(path("CALLES")), records);
        EXPECT_EQ(readFile(folder_ / "CALLES.MDX"), index);
    }
    EXPECT_EQ(readFile(path("CALLES")), records);
    EXPECT_EQ(readFile(folder_ / "CALLES.MDX"), index);
    EXPECT_EQ(files(), oldFiles_);
}

TEST_F(RevisionInExchange, ThatDoesNotFitOnTheDiskLeavesTheTableAsItWasWhateverIsMissing) {
    const Bytes records = readFile(path("CALLES")), index = readFile(folder_ / "CALLES.MDX");
    int refused = 0, made = 0;
    for (std::size_t limit = 512; limit < 2 * (records.size() + index.size()); limit += 2560) {
        SCOPED_TRACE("files of at most " + std::to_string(limit) + " bytes");
        writeFile(path("CALLES"), records);
        writeFile(folder_ / "CALLES.MDX", index);
        bool isMade = false;
        {
            const ambrel::test::FileSizeLimit smallDisk(limit);
            TableExchange exchange(paths());
            try {
                revise(exchange, 400);
                exchange.commit();
                isMade = true;
            } catch (const Error& error) {
                EXPECT_EQ(error.code(), ErrorCode::DiskFull) << error.what();
                EXPECT_FALSE(exchange.isDecided()) << error.what();
            }
        }
        ++(isMade ? made : refused);
        if (isMade) {
            expectRevised(400);
        } else {
            EXPECT_EQ(readFile(path("CALLES")), records);
            EXPECT_EQ(readFile(folder_ / "CALLES.MDX"), index);
        }
        EXPECT_EQ(files(), oldFiles_);
    }
    EXPECT_GT(refused, 5);
    EXPECT_GT(made, 5);
}

} // namespace
