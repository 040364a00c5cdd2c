// Loading the official street directory through the administrator's command, against the same files read by
// the same parser, joined in SQLite, and stored with the same indexes in one transaction; and the next
// edition, in which one line in a hundred is another, over the first one.

#include <cstdlib>
#include <filesystem>
#include <stdexcept>

#include <benchmark/benchmark.h>

#include "child_run.h"
#include "directory/RecordReading.h"
#include "directory/StreetIndex.h"
#include "settled_disk.h"
#include "sqlite_postal.h"
#include "tools/edition/NextEdition.h"

namespace bench {

namespace {

using namespace ambrel::directory;

const edition::Files& editionFiles() {
    static const edition::Files files = [] {
        const char* const realData = std::getenv("AMBREL_REAL_DATA");
        const auto places =
            realData != nullptr ? edition::realPlaces(realData) : edition::inventedPlaces(8000);
        const std::string folder = workFolder + "/oficial";
        std::filesystem::create_directories(folder);
        return edition::writeEdition(folder, places, {.stretches = std::uint64_t{rowCount} / 3 * 4});
    }();
    return files;
}

/// Returns the command's peak memory in MiB.
double load(const edition::Files& files, const std::string& folder) {
    return runAmbcp({"callejero", "cargar", folder, "--tramos", files.stretches, "--vias", files.streets,
                     "--seudovias", files.pseudoStreets, "--unidades", files.units, "--municipios",
                     files.municipalities});
}

void loadOurs(benchmark::State& state) {
    const edition::Files& files = editionFiles();
    const std::string folder = workFolder + "/callejero";
    double memory = 0;
    for (auto _ : state) {
        state.PauseTiming();
        std::filesystem::remove_all(folder);
        state.ResumeTiming();
        settleDisk(state);
        memory = load(files, folder);
    }
    state.counters["MiB"] = memory;
    state.counters["stretches"] = static_cast<double>(files.stretchLines);
    std::filesystem::remove_all(folder);
}

void loadSecond(benchmark::State& state) {
    constexpr unsigned changedEvery = 300; // stretches and streets, which together change a row in a hundred
    const std::string folder = workFolder + "/callejero", nextFolder = workFolder + "/oficial2";
    std::filesystem::create_directories(nextFolder);
    const edition::Files next = edition::writeNextEdition(editionFiles(), nextFolder, changedEvery);
    double memory = 0;
    for (auto _ : state) {
        state.PauseTiming();
        std::filesystem::remove_all(folder);
        load(editionFiles(), folder);
        state.ResumeTiming();
        settleDisk(state);
        memory = load(next, folder);
    }
    state.counters["MiB"] = memory;
    std::filesystem::remove_all(folder);
    std::filesystem::remove_all(nextFolder);
}

/// Inserts what a function binds for each line of a file.
template<class Record, class Read, class Bind>
void insertLines(sqlite3* database, const std::string& path, const char* sql, Read readLine, Bind bind) {
    const Statement insert = prepare(database, sql);
    const OfficialFile file = officialFiles(path).front();
    const Layout layout = findLayout(file).value();
    static_cast<void>(readRecords<Record>(
        file, [&](const FixedLine& line, Record& record) { return readLine(line, layout, record); },
        [&](const Record& record, std::uint64_t) {
            bind(insert.get(), record);
            if (sqlite3_step(insert.get()) != SQLITE_DONE) {
                throw std::runtime_error(sql);
            }
            sqlite3_reset(insert.get());
            return Refusal(nullptr);
        }));
}

void bindText(sqlite3_stmt* statement, int place, std::string_view text) {
    sqlite3_bind_text(statement, place, text.data(), static_cast<int>(text.size()), SQLITE_STATIC);
}

void readIntoSqlite(sqlite3* database) {
    const edition::Files& files = editionFiles();
    insertLines<StreetLine>(
        database, files.streets, "INSERT OR IGNORE INTO vias VALUES(?,?,?)",
        [](const FixedLine& line, const Layout& layout, StreetLine& street) {
            return read(line, layout.repeatsName, street);
        },
        [](sqlite3_stmt* insert, const StreetLine& street) {
            sqlite3_bind_int64(insert, 1,
                               static_cast<sqlite3_int64>(streetId(street.place, false, street.street)));
            bindText(insert, 2, street.type);
            bindText(insert, 3, street.name);
        });
    insertLines<PseudoLine>(
        database, files.pseudoStreets, "INSERT OR IGNORE INTO vias VALUES(?,'',?)",
        [](const FixedLine& line, const Layout& layout, PseudoLine& pseudo) {
            return read(line, layout.repeatsName, pseudo);
        },
        [](sqlite3_stmt* insert, const PseudoLine& pseudo) {
            sqlite3_bind_int64(insert, 1,
                               static_cast<sqlite3_int64>(streetId(pseudo.place, true, pseudo.pseudo)));
            bindText(insert, 2, pseudo.name);
        });
    insertLines<UnitLine>(
        database, files.units, "INSERT OR IGNORE INTO lugares VALUES(?,?)",
        [](const FixedLine& line, const Layout&, UnitLine& unit) { return read(line, unit); },
        [](sqlite3_stmt* insert, const UnitLine& unit) {
            sqlite3_bind_int64(insert, 1, unit.place);
            bindText(insert, 2, unit.municipality);
        });
    insertLines<StretchLine>(
        database, files.stretches, "INSERT INTO tramos VALUES(?,?,?,?,?)",
        [](const FixedLine& line, const Layout&, StretchLine& stretch) { return read(line, stretch); },
        [](sqlite3_stmt* insert, const StretchLine& stretch) {
            const bool isPseudo = stretch.pseudo != 0;
            sqlite3_bind_int64(insert, 1,
                               static_cast<sqlite3_int64>(streetId(
                                   stretch.place, isPseudo, isPseudo ? stretch.pseudo : stretch.street)));
            sqlite3_bind_int64(insert, 2, stretch.postalCode);
            sqlite3_bind_int(insert, 3, static_cast<int>(stretch.numbering));
            sqlite3_bind_int(insert, 4, stretch.first);
            sqlite3_bind_int(insert, 5, stretch.last);
        });
}

void loadSqliteDirectory(benchmark::State& state) {
    editionFiles();
    const std::string path = workFolder + "/oficial.sqlite";
    for (auto _ : state) {
        settleDisk(state);
        const Database database = openSqlite(path);
        execute(database.get(),
                "CREATE TABLE postal(codigo1 TEXT, provincia TEXT, capital TEXT, tipo_via TEXT, via TEXT,"
                "impar_ini INT, impar_fin INT, par_ini INT, par_fin INT, codpostal TEXT, municipi TEXT, "
                "cod_ine TEXT);"
                "BEGIN;"
                "CREATE TEMP TABLE vias(id INTEGER PRIMARY KEY, tipo TEXT, nombre TEXT);"
                "CREATE TEMP TABLE lugares(id INTEGER PRIMARY KEY, nombre TEXT);"
                "CREATE TEMP TABLE tramos(id INT, cp INT, lado INT, ini INT, fin INT)");
        readIntoSqlite(database.get());
        execute(database.get(), "INSERT INTO postal SELECT printf('%08d', row_number() OVER ()), "
                                "printf('%02d', cp / 1000), '9', tipo, v.nombre,"
                                "min(CASE lado WHEN 1 THEN ini END), max(CASE lado WHEN 1 THEN fin END),"
                                "min(CASE lado WHEN 2 THEN ini END), max(CASE lado WHEN 2 THEN fin END),"
                                "printf('%05d', cp), l.nombre, printf('%05d', t.id >> 18) FROM tramos t JOIN "
                                "vias v ON v.id = t.id "
                                "JOIN lugares l ON l.id = t.id >> 18 GROUP BY t.id, cp");
        execute(database.get(), indexSql);
        execute(database.get(), "COMMIT");
    }
    std::filesystem::remove(path);
}

BENCHMARK(loadOurs)->Name("directory/ours")->Iterations(3)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(loadSecond)->Name("directory/second")->Iterations(3)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(loadSqliteDirectory)
    ->Name("directory/sqlite")
    ->Iterations(1)
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

} // namespace

} // namespace bench
