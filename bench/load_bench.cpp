// Loading and reindexing the whole directory through the administrator's command, against SQLite's bulk
// insert.

#include <fstream>

#include <benchmark/benchmark.h>

#include "child_run.h"
#include "our_postal.h"
#include "settled_disk.h"
#include "sqlite_postal.h"

namespace bench {

namespace {

const std::string& csvPath() {
    static const std::string path = [] {
        std::string made = workFolder + "/postal.csv";
        std::ofstream csv(made);
        csv << "CODIGO1,PROVINCIA,CAPITAL,TIPO_VIA,VIA,IMPAR_INI,IMPAR_FIN,PAR_INI,PAR_FIN,CODPOSTAL,"
               "MUNICIPI,COD_INE\n";
        for (std::uint32_t i = 0; i < rowCount; ++i) {
            const PostalRow r = postalRow(i);
            csv << r.codigo1 << ',' << r.provincia << ',' << r.capital << ',' << r.tipoVia << ',' << r.via
                << ',' << r.imparIni << ',' << r.imparFin << ',' << r.parIni << ',' << r.parFin << ','
                << r.codPostal << ',' << r.municipi << ',' << r.codIne << '\n';
        }
        return made;
    }();
    return path;
}

enum class Memory { AsFound, Settled };

void settle(benchmark::State& state, Memory memory) {
    settleDisk(state);
    if (memory == Memory::Settled) {
        settleMemory(state);
    }
}

void loadOurCsv(benchmark::State& state, Memory found) {
    const std::string folder = workFolder + "/cargar";
    runAmbcp({"crear", folder, "--forzar"});
    csvPath();
    double memory = 0;
    for (auto _ : state) {
        settle(state, found);
        memory = runAmbcp({"cargar", folder, "POSTAL", csvPath(), "--reemplazar"});
    }
    state.counters["MiB"] = memory;
}

void reindexOurs(benchmark::State& state) {
    double memory = 0;
    for (auto _ : state) {
        settleDisk(state);
        memory = runAmbcp({"reindexar", workFolder + "/cargar", "POSTAL"});
    }
    state.counters["MiB"] = memory;
}

void bulkInsertSqlite(benchmark::State& state, Memory found) {
    for (auto _ : state) {
        settle(state, found);
        loadSqlite(workFolder + "/bulk.sqlite");
    }
}

template<typename Function>
void add(const char* name, Function&& function) {
    benchmark::RegisterBenchmark(name, function)->Iterations(3)->UseRealTime()->Unit(benchmark::kMillisecond);
}

[[maybe_unused]] const bool areAdded = [] {
    add("load/ours", [](benchmark::State& state) { loadOurCsv(state, Memory::AsFound); });
    add("reindex/ours", reindexOurs);
    add("bulk/sqlite", [](benchmark::State& state) { bulkInsertSqlite(state, Memory::AsFound); });
    add("load_settled/ours", [](benchmark::State& state) { loadOurCsv(state, Memory::Settled); });
    add("bulk_settled/sqlite", [](benchmark::State& state) { bulkInsertSqlite(state, Memory::Settled); });
    return true;
}();

} // namespace

} // namespace bench
