// Nearest seek by (PROVINCIA, CAPITAL, VIA, TIPO_VIA) plus reading five columns, safe against writers in
// other processes: each seek by itself, and many in one read scope or, with the rivals, in one read
// transaction.

#include <optional>

#include <benchmark/benchmark.h>

#include "dbase/lock/read_scope.h"

#include "lmdb_postal.h"
#include "our_postal.h"
#include "sqlite_postal.h"

namespace bench {

namespace {

constexpr std::uint32_t searches = 200'000;

/// Number of seeks under one lock.
enum Together : std::size_t { Each = 1, Thousand = 1000 };

const std::vector<PostalSearch>& allSearches() {
    static const std::vector<PostalSearch> made = [] {
        std::vector<PostalSearch> list;
        for (std::uint32_t i = 0; i < searches; ++i) {
            list.push_back(postalSearch(i));
        }
        return list;
    }();
    return made;
}

void seekOurs(benchmark::State& state, Together together) {
    dbase::Dataset table;
    openOurs(table, "VIA");
    dbase::Field* const columns[] = {&table.field("CODIGO1"), &table.field("VIA"), &table.field("TIPO_VIA"),
                                     &table.field("CODPOSTAL"), &table.field("IMPAR_FIN")};
    const auto& list = allSearches();
    std::size_t i = 0;
    // One key, whose values are assigned for each search, as the rival binds those of its prepared statement.
    dbase::Key key{{"PROVINCIA", std::string()},
                   {"CAPITAL", std::string()},
                   {"VIA", std::string()},
                   {"TIPO_VIA", std::string()}};
    const auto assign = [&](std::size_t part, const std::string& text) {
        std::get<std::string>(key[part].value) = text;
    };
    std::optional<dbase::ReadScope> scope;
    for (auto _ : state) {
        if (together != Each && i % together == 0) {
            scope.reset();
            scope.emplace();
        }
        const PostalSearch& search = list[i++ % searches];
        assign(0, search.provincia);
        assign(1, search.capital);
        assign(2, search.via);
        assign(3, search.tipoVia);
        bool found = table.seek(key, dbase::SeekMode::Nearest);
        benchmark::DoNotOptimize(found);
        for (int column = 0; column < 4; ++column) {
            benchmark::DoNotOptimize(columns[column]->text());
        }
        benchmark::DoNotOptimize(columns[4]->integer());
    }
}

void run(const Statement& statement) {
    sqlite3_step(statement.get());
    sqlite3_reset(statement.get());
}

void seekSqlite(benchmark::State& state, const Database& database, Together together) {
    const Statement begin = prepare(database.get(), "BEGIN"), commit = prepare(database.get(), "COMMIT");
    const Statement select =
        prepare(database.get(), "SELECT codigo1, via, tipo_via, codpostal, impar_fin FROM postal "
                                "WHERE (provincia, capital, via, tipo_via) >= (?,?,?,?) "
                                "ORDER BY provincia, capital, via, tipo_via LIMIT 1");
    const auto& list = allSearches();
    std::size_t i = 0;
    for (auto _ : state) {
        if (together != Each && i % together == 0) {
            if (i != 0) {
                run(commit);
            }
            run(begin);
        }
        const PostalSearch& search = list[i++ % searches];
        const auto bind = [&](int at, const std::string& text) {
            sqlite3_bind_text(select.get(), at, text.data(), static_cast<int>(text.size()), SQLITE_STATIC);
        };
        bind(1, search.provincia);
        bind(2, search.capital);
        bind(3, search.via);
        bind(4, search.tipoVia);
        if (sqlite3_step(select.get()) == SQLITE_ROW) {
            for (int column = 0; column < 4; ++column) {
                benchmark::DoNotOptimize(
                    std::string(reinterpret_cast<const char*>(sqlite3_column_text(select.get(), column))));
            }
            benchmark::DoNotOptimize(sqlite3_column_int(select.get(), 4));
        }
        sqlite3_reset(select.get());
    }
    if (together != Each) {
        run(commit);
    }
}

void seekSqliteRollback(benchmark::State& state, Together together) {
    seekSqlite(state, openSqlite(sqliteRollbackPath(), "FULL", "DELETE"), together);
}
void seekSqliteWal(benchmark::State& state, Together together) {
    seekSqlite(state, openSqlite(sqlitePath()), together);
}

void seekLmdb(benchmark::State& state, Together together) {
    LmdbPostal postal;
    const auto& list = allSearches();
    std::size_t i = 0;
    for (auto _ : state) {
        if (i % together == 0) {
            postal.renew();
        }
        const PostalSearch& search = list[i++ % searches];
        const std::string_view row =
            postal.seek(viaKey(search.provincia, search.capital, search.via, search.tipoVia));
        if (!row.empty()) { // the same five columns, by their offsets in our record
            benchmark::DoNotOptimize(std::string(row.substr(1, 8)));
            benchmark::DoNotOptimize(std::string(row.substr(15, 45)));
            benchmark::DoNotOptimize(std::string(row.substr(12, 3)));
            benchmark::DoNotOptimize(std::string(row.substr(84, 5)));
            benchmark::DoNotOptimize(std::atoi(std::string(row.substr(66, 6)).c_str()));
        }
    }
}

BENCHMARK_CAPTURE(seekOurs, each, Each)->Name("seek/ours")->MinTime(2);
BENCHMARK_CAPTURE(seekSqliteRollback, each, Each)->Name("seek/sqlite")->MinTime(2);
BENCHMARK_CAPTURE(seekSqliteWal, each, Each)->Name("seek/sqlite_wal")->MinTime(2);
BENCHMARK_CAPTURE(seekLmdb, each, Each)->Name("seek/lmdb")->MinTime(2);
BENCHMARK_CAPTURE(seekOurs, scope, Thousand)->Name("seek_scope/ours")->MinTime(2);
BENCHMARK_CAPTURE(seekSqliteRollback, scope, Thousand)->Name("seek_scope/sqlite")->MinTime(2);
BENCHMARK_CAPTURE(seekSqliteWal, scope, Thousand)->Name("seek_scope/sqlite_wal")->MinTime(2);
BENCHMARK_CAPTURE(seekLmdb, scope, Thousand)->Name("seek_scope/lmdb")->MinTime(2);

} // namespace

} // namespace bench
