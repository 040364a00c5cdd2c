// Fills, exchanges and reads the three tables.
#include "ExchangedTables.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

#include "dbase/support/StoredTable.h"
#include "dbase/system/error.h"
#include "dbase/table/bulk_loader.h"
#include "dbase/table/table_creation.h"
#include "dbase/table/table_exchange.h"
#include "dbase/table/table_revision.h"

namespace dbase::test {

namespace {

constexpr int rowsOfTable = 12;
/// The table that is changed in place has many others, of nobody, so that twelve are few; it
/// grows.
constexpr std::size_t changedInPlace = 1;
constexpr int rowsOfNobody = 900, rowsAdded = 10, nobody = 999999;

Bytes rowOf(const Schema& schema, int author, int number) {
    return makeRecord(schema, {std::to_string(author), "FILA " + std::to_string(number)});
}

void addRows(BulkLoader& loader, int author, int count) {
    for (int number = 1; number <= count; ++number) {
        loader.add(rowOf(loader.schema(), author, number));
    }
}

int authorOf(Table& table) {
    EXPECT_FALSE(table.isReadOnly()) << table.readOnlyReason();
    const auto authorIn = [&](RecordNumber number) {
        return valueOf(table.schema(), storedRecord(table, number), "AUTOR");
    };
    auto byAuthor = order(table, "AUTOR");
    EXPECT_EQ(order(table, "NOMBRE").size(), byAuthor.size()) << table.path();
    std::erase_if(byAuthor, [&](RecordNumber number) { return authorIn(number) == std::to_string(nobody); });
    EXPECT_EQ(byAuthor.size(), rowsOfTable) << table.path();
    std::string author;
    for (const RecordNumber number : byAuthor) {
        const std::string found = authorIn(number);
        EXPECT_TRUE(author.empty() || found == author) << table.path() << " has rows of two";
        author = found;
    }
    return std::stoi(author);
}

} // namespace

std::vector<std::string> exchangedFiles(const std::string& folder) {
    std::vector<std::string> files;
    for (const std::string name : exchangedNames) {
        files.push_back(folder + '/' + name + ".DBF");
    }
    return files;
}

TableDefinition exchangedDefinition(const std::string& name) {
    return {.name = name,
            .columns = {{"AUTOR", ColumnType::Numeric, 6, 0, 0}, {"NOMBRE", ColumnType::Character, 60, 0, 0}},
            .tags = {{.name = "AUTOR", .expression = "AUTOR"}, {.name = "NOMBRE", .expression = "NOMBRE"}}};
}

void makeExchangedTables(const std::string& folder, Folders& folders) {
    const std::vector<std::string> files = exchangedFiles(folder);
    for (const std::size_t i : {0U, 1U}) {
        createTable(folders, folder, exchangedDefinition(exchangedNames.at(i)));
        BulkLoader loader(files.at(i), BulkLoader::Mode::Append, folders);
        addRows(loader, 0, rowsOfTable);
        addRows(loader, nobody, i == changedInPlace ? rowsOfNobody : 0);
        loader.finish();
    }
}

void exchangeBy(int author, const std::string& folder, Folders& folders) {
    TableExchange exchange(exchangedFiles(folder), folders);
    exchange.table(0).sumOld();
    fillExchange(exchange, author);
    exchange.table(0).settle(); // the others are left to the exchange
    exchange.commit();
}

void fillExchange(TableExchange& exchange, int author) {
    for (const std::size_t i : {0U, 1U}) {
        TableRevision revision(exchange.table(i));
        const RecordNumber count = std::min<RecordNumber>(revision.recordCount(), rowsOfTable);
        for (RecordNumber number = 1; number <= count; ++number) {
            revision.change(number, rowOf(revision.schema(), author, static_cast<int>(number)));
        }
        for (int number = 1; i == changedInPlace && number <= rowsAdded; ++number) {
            revision.add(rowOf(revision.schema(), nobody, rowsOfNobody + number));
        }
        revision.finish();
    }
    BulkLoader origin(exchange.table(2), exchangedDefinition(exchangedNames[2]));
    addRows(origin, author, rowsOfTable);
    origin.finish();
}

Authors authorsIn(const std::string& folder, std::size_t first, Folders& folders) {
    const std::vector<std::string> files = exchangedFiles(folder);
    Authors authors{};
    std::vector<std::shared_ptr<Table>> open;
    for (std::size_t i = 0; i < files.size(); ++i) {
        const std::size_t number = (first + i) % files.size();
        try {
            open.push_back(Table::open(files[number], folders));
            authors.at(number) = authorOf(*open.back());
        } catch (const Error& error) {
            if (error.code() != ErrorCode::NotFound) {
                throw;
            }
            authors.at(number) = noTable;
        }
    }
    return authors;
}

} // namespace dbase::test
