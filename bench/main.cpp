// Runs all benchmarks and ends with one line per figure: ratio NAME VALUE, the rival's time over ours.

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <map>
#include <string_view>
#include <system_error>

#include <benchmark/benchmark.h>
#include <unistd.h>

#include "postal_rows.h"

namespace {

struct Ratio {
    const char *name, *ours, *rival;
};

// The rival's time over ours, unless it says otherwise.
constexpr Ratio ratios[] = {
    {"seek_vs_sqlite", "seek/ours", "seek/sqlite"},
    {"seek_vs_sqlite_wal", "seek/ours", "seek/sqlite_wal"},
    {"seek_vs_lmdb", "seek/ours", "seek/lmdb"},
    {"seek_scope_vs_sqlite", "seek_scope/ours", "seek_scope/sqlite"},
    {"seek_scope_vs_sqlite_wal", "seek_scope/ours", "seek_scope/sqlite_wal"},
    {"seek_scope_vs_lmdb", "seek_scope/ours", "seek_scope/lmdb"},
    {"scan_vs_sqlite", "scan/ours", "scan/sqlite"},
    {"scan_scope_vs_sqlite", "scan_scope/ours", "scan/sqlite"},
    {"insert_off_vs_sqlite", "insert_off/ours", "insert_off/sqlite"},
    {"insert_full_vs_sqlite", "insert_full/ours", "insert_full/sqlite"},
    {"load_vs_sqlite", "load/ours", "bulk/sqlite"},
    {"load_settled_vs_sqlite", "load_settled/ours", "bulk_settled/sqlite"},
    {"reindex_vs_sqlite", "reindex/ours", "bulk/sqlite"},
    {"directory_vs_sqlite", "directory/ours", "directory/sqlite"},
    {"reopen_vs_sqlite", "reopen/ours", "reopen/sqlite"},
    {"street_keystroke_vs_sqlite", "key/ours", "key/sqlite"},
    {"street_keystroke_vs_sqlite_wal", "key/ours", "key/sqlite_wal"},
    {"street_keystroke_vs_sqlite_query", "key/ours", "key/sqlite_query"},
    {"new_street_vs_sqlite", "addition/ours", "addition/sqlite"},
    {"new_street_disk_vs_sqlite", "addition_full/ours", "addition_full/sqlite"},
    {"ine_pass_vs_sqlite", "ine_pass/ours", "ine_pass/sqlite"},
    {"ine_pass_vs_sqlite_wal", "ine_pass/ours", "ine_pass/sqlite_wal"},
    {"save_streets_vs_sqlite", "save_streets/ours", "save_streets/sqlite"},
    {"save_streets_vs_sqlite_together", "save_streets/ours", "save_streets/sqlite_together"},
    {"suggest_vs_fts5", "suggest/ours", "suggest/fts5"},
    {"suggest_largest_vs_fts5", "suggest_largest/ours", "suggest_largest/fts5"},
    {"validate_vs_sqlite", "validate/ours", "validate/sqlite"},
    {"validate_slip_vs_fts5", "validate_slip/ours", "validate_slip/fts5"},
    // Our time over the rival's, which only parses.
    {"parse_vs_pugixml", "parse/pugixml", "parse/ours"},
    // The second edition's time over that of the first one.
    {"directory_second_vs_first", "directory/ours", "directory/second"},
    // An audit's time over that of a scan.
    {"audit_vs_scan", "audit/scan", "audit/ours"},
    // A large table's time over a small one's.
    {"province_200_vs_20", "province/20", "province/200"},
    {"street_dialog_1m5_vs_1k", "street_dialog/1k", "street_dialog/1m5"},
    {"street_keystroke_1m5_vs_1k", "street_keystroke/1k", "street_keystroke/1m5"},
    {"list_90k_vs_1k", "list/1k", "list/90k"},
    {"list_1m5_vs_1k", "list/1k", "list/1m5"},
    {"keystroke_1m5_vs_1k", "keystroke/1k", "keystroke/1m5"},
    // Tables of the whole country over those of one municipality.
    {"country_street_key_vs_town", "country_street_key/town", "country_street_key/country"},
    {"country_municipality_key_vs_town", "country_municipality_key/town", "country_municipality_key/country"},
    {"country_list_vs_town", "country_list/town", "country_list/country"},
    {"country_suggest_vs_town", "country_suggest/town", "country_suggest/country"},
    {"suggest_1m5_vs_100k", "suggest_growth/100k", "suggest_growth/1m5"},
};

// Prints as usual and keeps the real time of each benchmark.
class RatioReporter final : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            const std::string full = run.benchmark_name();
            const std::size_t slash = full.find('/', full.find('/') + 1);
            seconds_[full.substr(0, slash)] =
                run.GetAdjustedRealTime() / benchmark::GetTimeUnitMultiplier(run.time_unit);
        }
    }

    void print(const Ratio& ratio) const {
        const auto ours = seconds_.find(ratio.ours), rival = seconds_.find(ratio.rival);
        if (ours != seconds_.end() && rival != seconds_.end()) {
            std::printf("ratio %s %.2f\n", ratio.name, rival->second / ours->second);
        }
    }

private:
    std::map<std::string, double> seconds_;
};

// Takes «--rows N» from the command line. False for an N that is not a number of rows.
bool takeRowCount(int& argc, char** argv) {
    const auto option = std::find_if(
        argv + 1, argv + argc, [](const char* argument) { return std::strcmp(argument, "--rows") == 0; });
    if (option == argv + argc) {
        return true;
    }
    const std::string_view number = option + 1 == argv + argc ? "" : option[1];
    const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), bench::rowCount);
    if (error != std::errc() || end != number.data() + number.size() || bench::rowCount == 0) {
        return false;
    }
    std::copy(option + 2, argv + argc + 1, option); // with the null at its end
    argc -= 2;
    return true;
}

} // namespace

int main(int argc, char** argv) {
    if (!takeRowCount(argc, argv)) {
        std::fputs("ambrel_bench: --rows wants a number of rows\n", stderr);
        return 2;
    }
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 2;
    }
    bench::workFolder =
        (std::filesystem::temp_directory_path() / ("ambrel-bench-" + std::to_string(getpid()))).string();
    std::filesystem::create_directories(bench::workFolder);
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    std::filesystem::remove_all(bench::workFolder);

    for (const Ratio& ratio : ratios) {
        reporter.print(ratio);
    }
    return 0;
}
