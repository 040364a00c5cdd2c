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

void loadOurCsv(benchmark::State& state) {
    const std::string folder = workFolder + "/cargar";
    runAmbcp({"crear", folder, "--forzar"});
    csvPath();
    double memory = 0;
    for (auto _ : state) {
        settleDisk(state);
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

void bulkInsertSqlite(benchmark::State& state) {
    for (auto _ : state) {
        settleDisk(state);
        loadSqlite(workFolder + "/bulk.sqlite");
    }
}

BENCHMARK(loadOurCsv)->Name("load/ours")->Iterations(3)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(reindexOurs)->Name("reindex/ours")->Iterations(3)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(bulkInsertSqlite)->Name("bulk/sqlite")->Iterations(3)->UseRealTime()->Unit(benchmark::kMillisecond);

} // namespace

} // namespace bench
