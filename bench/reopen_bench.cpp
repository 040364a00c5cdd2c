// A second cursor on a table that is already open, with its first read, against opening a database and
// reading.

#include <benchmark/benchmark.h>

#include "our_postal.h"
#include "sqlite_postal.h"

namespace bench {

namespace {

void reopenOurs(benchmark::State& state) {
    dbase::Dataset first;
    openOurs(first, "VIA");
    for (auto _ : state) {
        dbase::Dataset second("DB", "POSTAL", "VIA");
        second.open();
        benchmark::DoNotOptimize(second.field("VIA").view());
    }
}

void reopenSqlite(benchmark::State& state) {
    const Database first = openSqlite(sqlitePath());
    for (auto _ : state) {
        sqlite3* database = nullptr;
        sqlite3_open(sqlitePath().c_str(), &database);
        const Database second(database);
        const Statement select = prepare(database, "SELECT via FROM postal INDEXED BY via_tag "
                                                   "ORDER BY provincia, capital, via, tipo_via LIMIT 1");
        sqlite3_step(select.get());
        benchmark::DoNotOptimize(sqlite3_column_text(select.get(), 0));
    }
}

BENCHMARK(reopenOurs)->Name("reopen/ours")->UseRealTime();
BENCHMARK(reopenSqlite)->Name("reopen/sqlite")->UseRealTime();

} // namespace

} // namespace bench
