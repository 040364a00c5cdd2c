// Ordered scan of the whole directory by the VIA tag, reading two columns.

#include <optional>

#include <benchmark/benchmark.h>

#include "dbase/lock/read_scope.h"

#include "our_postal.h"
#include "sqlite_postal.h"

namespace bench {

namespace {

// In one scope, as the rival's statement is one read transaction, or with a lock pair for each leaf.
void scanOurs(benchmark::State& state, bool inScope) {
    dbase::Dataset table;
    openOurs(table, "VIA");
    const dbase::Field& via = table.field("VIA");
    const dbase::Field& code = table.field("CODPOSTAL");
    for (auto _ : state) {
        std::optional<dbase::ReadScope> scope;
        if (inScope) {
            scope.emplace();
        }
        std::size_t bytes = 0;
        for (table.first(); !table.eof(); table.next()) {
            bytes += via.view().size() + code.view().size();
        }
        benchmark::DoNotOptimize(bytes);
    }
}

void scanWithoutScope(benchmark::State& state) { scanOurs(state, false); }
void scanInScope(benchmark::State& state) { scanOurs(state, true); }

void scanSqlite(benchmark::State& state) {
    const Database database = openSqlite(sqlitePath());
    const Statement select = prepare(database.get(), "SELECT via, codpostal FROM postal INDEXED BY via_tag "
                                                     "ORDER BY provincia, capital, via, tipo_via");
    for (auto _ : state) {
        int bytes = 0;
        while (sqlite3_step(select.get()) == SQLITE_ROW) {
            bytes += sqlite3_column_bytes(select.get(), 0) + sqlite3_column_bytes(select.get(), 1);
        }
        benchmark::DoNotOptimize(bytes);
        sqlite3_reset(select.get());
    }
}

BENCHMARK(scanWithoutScope)->Name("scan/ours")->Iterations(3)->Unit(benchmark::kMillisecond);
BENCHMARK(scanInScope)->Name("scan_scope/ours")->Iterations(3)->Unit(benchmark::kMillisecond);
BENCHMARK(scanSqlite)->Name("scan/sqlite")->Iterations(3)->Unit(benchmark::kMillisecond);

} // namespace

} // namespace bench
