// The maintenance pass that writes municipality and INE code into every street, against the same updates in
// one unsynced transaction.

#include <filesystem>

#include <benchmark/benchmark.h>

#include "controller/InePass.h"

#include "directory_folder.h"
#include "sqlite_postal.h"

namespace bench {

namespace {

// Runs once: a second pass would find everything written.
void passOurs(benchmark::State& state) {
    const DirectoryInUse directory(Directory::Large);
    for (auto _ : state) {
        ambrel::fillIneCodes("DB", ambrel::InePassRows::All, [](std::uint32_t, std::uint32_t) {});
    }
}

std::string sqliteWithMunicipalities(const char* name) {
    std::string path = workFolder + '/' + name;
    std::filesystem::copy_file(sqlitePath(), path);
    const Database database = openSqlite(path);
    execute(database.get(), "CREATE TABLE municipi(codpostal TEXT, cod_ine TEXT, nombre TEXT, ent_menor INT);"
                            "BEGIN");
    {
        const Statement insert = prepare(database.get(), "INSERT INTO municipi VALUES (?,?,?,0)");
        for (unsigned number = 0; number < provinceCount * codesOfProvince; ++number) {
            const MunicipalityRow row = municipalityRow(number);
            const std::string* const values[] = {&row.postalCode, &row.ineCode, &row.name};
            for (int i = 0; i < 3; ++i) {
                sqlite3_bind_text(insert.get(), i + 1, values[i]->data(), static_cast<int>(values[i]->size()),
                                  SQLITE_STATIC);
            }
            sqlite3_step(insert.get());
            sqlite3_reset(insert.get());
        }
    }
    execute(database.get(), "COMMIT; CREATE INDEX municipi_codpostal ON municipi(codpostal);"
                            "ANALYZE; PRAGMA wal_checkpoint(TRUNCATE)");
    return path;
}

void passSqlite(benchmark::State& state, const char* name, const char* journal) {
    const std::string path = sqliteWithMunicipalities(name);
    const Database database = openSqlite(path, "OFF", journal);
    for (auto _ : state) {
        execute(database.get(),
                "BEGIN;"
                "UPDATE postal SET (municipi, cod_ine) = (m.nombre, m.cod_ine) FROM municipi m "
                "WHERE m.codpostal = postal.codpostal AND m.ent_menor = 0;"
                "COMMIT");
    }
}

void passSqliteWal(benchmark::State& state) { passSqlite(state, "pase-wal.sqlite", "WAL"); }
void passSqliteRollback(benchmark::State& state) { passSqlite(state, "pase.sqlite", "DELETE"); }

BENCHMARK(passOurs)->Name("ine_pass/ours")->Iterations(1)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(passSqliteWal)
    ->Name("ine_pass/sqlite_wal")
    ->Iterations(1)
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(passSqliteRollback)
    ->Name("ine_pass/sqlite")
    ->Iterations(1)
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

} // namespace

} // namespace bench
