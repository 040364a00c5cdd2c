// Columns, outputs and totals of a validation.
#include "tools/validation_run.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <utility>
#include <vector>

#include "dbase/system/counted.h"
#include "dbase/system/quoted.h"
#include "loading/failure.h"
#include "tools/complain.h"
#include "tools/output_files.h"
#include "tools/table_folder.h"

namespace ambcp {

namespace {

using dbase::counted;

/// With one decimal and a comma.
std::string decimal(double value) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.1f", value);
    if (char* const point = std::strchr(text.data(), '.')) {
        *point = ',';
    }
    return text.data();
}

} // namespace

ambrel::NamedColumns readColumns(std::string_view text) {
    ambrel::NamedColumns columns;
    while (!text.empty()) {
        const std::string_view one = text.substr(0, text.find(','));
        const std::size_t equals = one.find('=');
        const auto column = ambrel::addressColumnOf(one.substr(0, equals));
        if (!column || equals == std::string_view::npos) {
            throw loading::Failure("--columnas: no se entiende " + dbase::inQuotes(one) + "; " + columnHint);
        }
        if (!columns.emplace(*column, one.substr(equals + 1)).second) {
            throw loading::Failure("--columnas: " + std::string(ambrel::addressColumnKey(*column)) +
                                   " se da más de una vez");
        }
        text.remove_prefix(std::min(one.size() + 1, text.size()));
    }
    return columns;
}

void requireOtherFiles(const ValidateOptions& options) {
    std::vector<NamedOutput> outputs{{"la salida", options.output}};
    for (const auto& [name, file] :
         {std::pair("--solo-fallos", options.unsettled), {"--informe", options.report}}) {
        if (!file.empty()) {
            outputs.push_back({name, file});
        }
    }
    requireOtherFiles({options.file}, outputs);
}

void tellTotals(const std::string& name, const ambrel::AddressFileTotals& totals,
                std::chrono::duration<double> elapsed) {
    complain(name + ": " + counted(totals.rows, "fila", "filas") + " en " + decimal(elapsed.count()) + " s");
    const auto line = [&](std::string_view title, std::uint64_t count) {
        std::array<char, 80> text{};
        std::snprintf(text.data(), text.size(), "  %-21.*s %10llu  %5s %%", static_cast<int>(title.size()),
                      title.data(), static_cast<unsigned long long>(count),
                      decimal(100.0 * static_cast<double>(count) / static_cast<double>(totals.rows)).c_str());
        complain(text.data());
    };
    for (std::size_t i = ambrel::verdictCount; i-- > 0;) {
        if (totals.verdicts[i] > 0) {
            line(ambrel::verdictName(static_cast<ambrel::Verdict>(i)), totals.verdicts[i]);
        }
    }
    if (totals.rows > 0) {
        line("resueltas solas", totals.settled());
    }
}

} // namespace ambcp
