// ambcp revisar: what is wrong in the content of MUNICIPI and POSTAL.

#include <array>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>

#include "controller/ProvinceName.h"
#include "dbase/system/counted.h"
#include "dbase/system/databases.h"
#include "dbase/system/names.h"
#include "directory/audit/Audit.h"
#include "directory/audit/AuditReport.h"
#include "loading/failure.h"
#include "tools/commands.h"
#include "tools/complain.h"
#include "tools/csv_lines.h"
#include "tools/cut_table.h"
#include "tools/line_output.h"
#include "tools/output_files.h"
#include "tools/progress.h"
#include "tools/review_repair.h"
#include "tools/table_folder.h"

namespace ambcp {

namespace {

using namespace ambrel::directory;
using dbase::counted;

/// Findings as CSV, in large pieces.
class FindingOutput {
public:
    explicit FindingOutput(const std::string& file) : output_(file) {
        output_.open();
        addCsvRow(pending_, {"GRAVEDAD", "TABLA", "REGISTRO", "CLAVE", "CLASE", "TEXTO", "PROPUESTA"});
    }

    void add(const Finding& finding) {
        const std::string record = finding.record == 0 ? "" : std::to_string(finding.record);
        addCsvRow(pending_, {severityName(finding.severity), ambrel::directory::tableName(finding.table),
                             record, finding.key, className(finding.kind), finding.text, finding.proposal});
        constexpr std::size_t piece = 1 << 16;
        if (pending_.size() > piece) {
            flush();
        }
    }

    void close() {
        flush();
        output_.close();
    }

private:
    void flush() {
        output_.write(pending_);
        pending_.clear();
    }

    LineOutput output_;
    std::string pending_;
};

/// The table to which an audit is confined; none if all of them are wanted.
std::optional<AuditedTable> auditedTable(const std::string& name) {
    const std::string upper = dbase::upperName(name);
    const std::string stem = upper.ends_with(".DBF") ? upper.substr(0, upper.size() - 4) : upper;
    for (const AuditedTable table : {AuditedTable::Municipalities, AuditedTable::Streets}) {
        if (stem == ambrel::directory::tableName(table)) {
            return table;
        }
    }
    if (!name.empty()) {
        throw loading::Failure("de la tabla «" + name +
                               "» no se revisa el contenido; se revisan MUNICIPI y POSTAL");
    }
    return std::nullopt;
}

using ClassCounts = std::array<std::uint64_t, findingClassCount>;

void tellTotals(const AuditTotals& totals, const ClassCounts& counts, bool hasStreets) {
    std::uint64_t all = 0;
    for (const std::uint64_t count : counts) {
        all += count;
    }
    complain("MUNICIPI: " + counted(totals.municipalityRows, "fila", "filas") + "; POSTAL: " +
             counted(totals.streetRows, "fila", "filas") + "; " + counted(all, "hallazgo", "hallazgos"));
    for (std::size_t i = 0; i < counts.size(); ++i) {
        if (counts.at(i) > 0) {
            std::array<char, 80> line{};
            const std::string_view name = className(static_cast<FindingClass>(i));
            std::snprintf(line.data(), line.size(), "  %-20.*s %10llu", static_cast<int>(name.size()),
                          name.data(), static_cast<unsigned long long>(counts.at(i)));
            complain(line.data());
        }
    }
    if (hasStreets) {
        complain(counted(totals.streets, "vía", "vías") + "; " + counted(totals.hiddenStreets, "va", "van") +
                 " en la clave detrás de otra del mismo nombre, de otro municipio");
        complain("bloque «99»: " + counted(totals.userKeys, "clave", "claves") +
                 (totals.highestUserKey.empty() ? "" : "; la más alta, " + totals.highestUserKey) +
                 "; hasta 99999999 quedan " + std::to_string(totals.keysLeft()));
    }
}

std::unique_ptr<AuditReport> makeReport(const ReviewOptions& options, std::optional<AuditedTable> only,
                                        const std::string& folder) {
    const std::string output = options.output.empty() ? "la salida" : "--salida";
    if (options.report.empty()) {
        requireOtherFiles({}, {{output, options.output}});
        return nullptr;
    }
    requireOtherFiles({}, {{"--informe", options.report}, {output, options.output}});
    AuditReport::requireWritable(options.report);
    AuditRun run{.tables = folder, .only = only ? std::string(ambrel::directory::tableName(*only)) : ""};
    if (dbase::findTableFile(folder, "PROVIN")) {
        run.provinceName = [](const std::string& code) { return ambrel::provinceName(code, folderDatabase); };
    }
    return std::make_unique<AuditReport>(std::move(run));
}

} // namespace

ExitCode revisar(const ReviewOptions& options) {
    const auto only = auditedTable(options.table);
    const std::string folder = useFolder(options.folder);
    for (const char* const table : {"MUNICIPI", "POSTAL"}) {
        requireWhole(requireTable(folder, table));
    }
    if (!options.repairs.empty()) {
        return repairTables(options, only);
    }
    const auto report = makeReport(options, only, folder);
    FindingOutput output(options.output);
    ClassCounts counts{};
    AuditTotals totals;
    {
        ProgressLine line("revisar");
        totals = auditTables(
            folderDatabase,
            [&](const Finding& finding) {
                if (!only || finding.table == *only) {
                    ++counts.at(static_cast<std::size_t>(finding.kind));
                    output.add(finding);
                    if (report) {
                        report->add(finding);
                    }
                }
            },
            [&](std::uint64_t done, std::uint64_t total) {
                line.work(done, static_cast<double>(done) / static_cast<double>(total));
            });
    }
    output.close();
    if (report) {
        report->write(options.report, totals);
    }
    tellTotals(totals, counts, only != AuditedTable::Municipalities);
    return counts == ClassCounts{} ? ExitCode::done : ExitCode::negative;
}

} // namespace ambcp
