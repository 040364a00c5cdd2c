// Several tables replaced together. What a stop leaves of it is in tests/resistance/exchange_cuts_test.cpp.
#include "dbase/table/table_exchange.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <thread>

#include "dbase/support/StoredTable.h"
#include "dbase/system/error.h"
#include "dbase/system/paths.h"
#include "dbase/table/bulk_loader.h"
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

} // namespace
