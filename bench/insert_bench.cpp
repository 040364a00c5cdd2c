// One-row inserts committed one by one into the full directory with its three tags: unsynced, and synced to
// disk.

#include <benchmark/benchmark.h>

#include "our_postal.h"
#include "sqlite_postal.h"

namespace bench {

namespace {

std::uint32_t nextRow = 10'000'000; // beyond every loaded row

void insertOurs(benchmark::State& state, dbase::Durability durability) {
    dbase::Dataset table;
    openOurs(table, "VIA");
    std::uint32_t number = rowCount;
    for (auto _ : state) {
        table.append();
        assignRow(postalRow(nextRow + number++), table);
        table.post(durability);
    }
    nextRow += 5'000'000;
}

void insertSqlite(benchmark::State& state, const char* synchronous) {
    const Database database = openSqlite(sqlitePath(), synchronous);
    const Statement insert = prepare(database.get(), insertSql);
    std::uint32_t number = rowCount;
    for (auto _ : state) {
        insertRow(insert.get(), postalRow(nextRow + number++));
    }
    nextRow += 5'000'000;
}

void insertOursUnsynced(benchmark::State& state) { insertOurs(state, dbase::Durability::Process); }
void insertOursSynced(benchmark::State& state) { insertOurs(state, dbase::Durability::Disk); }
void insertSqliteOff(benchmark::State& state) { insertSqlite(state, "OFF"); }
void insertSqliteFull(benchmark::State& state) { insertSqlite(state, "FULL"); }

BENCHMARK(insertOursUnsynced)->Name("insert_off/ours")->Iterations(50'000);
BENCHMARK(insertSqliteOff)->Name("insert_off/sqlite")->Iterations(50'000);
BENCHMARK(insertOursSynced)->Name("insert_full/ours")->Iterations(3'000)->UseRealTime();
BENCHMARK(insertSqliteFull)->Name("insert_full/sqlite")->Iterations(3'000)->UseRealTime();

} // namespace

} // namespace bench
