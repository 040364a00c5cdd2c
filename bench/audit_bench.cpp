// The audit of MUNICIPI and POSTAL, against one ordered scan of the streets that reads two of their columns.

#include <filesystem>

#include <benchmark/benchmark.h>

#include "data/TableDefinitions.h"
#include "dbase/dataset/dataset.h"
#include "directory/audit/Audit.h"

#include "postal_rows.h"
#include "table_filling.h"
#include "town_directory.h"

namespace bench {

namespace {

/// The large towns, with a table of street types that lacks one of the rare ones.
const std::string& auditedTowns() {
    static const std::string database = [] {
        const std::string towns = dbase::databaseFolder(TownDirectory::large().database),
                          folder = workFolder + "/audited";
        std::filesystem::create_directories(folder);
        for (const char* const file : {"MUNICIPI.DBF", "MUNICIPI.MDX", "POSTAL.DBF", "POSTAL.MDX"}) {
            std::filesystem::create_symlink(std::filesystem::path(towns) / file,
                                            std::filesystem::path(folder) / file);
        }
        makeTable(folder, ambrel::streetTypeTable(), [](dbase::BulkLoader& loader, std::span<char> record) {
            for (const char* const type : {"CL", "AV", "PZ", "CM", "PS"}) { // not TR
                Columns(loader.schema(), record).set("CODIGO", type);
                loader.add(record);
            }
        });
        dbase::setDatabaseFolder("audited", folder);
        return std::string("audited");
    }();
    return database;
}

void scanTowns(benchmark::State& state) {
    dbase::Dataset table(auditedTowns(), "POSTAL", "VIA");
    table.open();
    const dbase::Field& via = table.field("VIA");
    const dbase::Field& code = table.field("CODPOSTAL");
    for (auto _ : state) {
        std::size_t bytes = 0;
        for (table.first(); !table.eof(); table.next()) {
            bytes += via.view().size() + code.view().size();
        }
        benchmark::DoNotOptimize(bytes);
    }
}

void auditTowns(benchmark::State& state) {
    std::uint64_t findings = 0;
    for (auto _ : state) {
        findings = 0;
        const auto totals = ambrel::directory::auditTables(
            auditedTowns(), [&](const ambrel::directory::Finding&) { ++findings; });
        state.counters["rows"] = static_cast<double>(totals.streetRows);
    }
    state.counters["findings"] = static_cast<double>(findings);
}

BENCHMARK(scanTowns)->Name("audit/scan")->Iterations(3)->Unit(benchmark::kMillisecond);
BENCHMARK(auditTowns)->Name("audit/ours")->Iterations(3)->Unit(benchmark::kMillisecond);

} // namespace

} // namespace bench
