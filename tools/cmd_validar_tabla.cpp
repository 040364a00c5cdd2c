// ambcp validar --tabla: which addresses of a table are right; with --escribir, its columns are filled.

#include <algorithm>
#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "address/TableValidation.h"
#include "address/ValidationReport.h"
#include "controller/ProvinceName.h"
#include "dbase/system/counted.h"
#include "dbase/system/error.h"
#include "dbase/system/paths.h"
#include "dbase/system/quoted.h"
#include "loading/undo_file.h"
#include "tools/commands.h"
#include "tools/complain.h"
#include "tools/cut_table.h"
#include "tools/interruption.h"
#include "tools/late_csv.h"
#include "tools/line_output.h"
#include "tools/progress.h"
#include "tools/table_folder.h"
#include "tools/validation_run.h"

namespace ambcp {

namespace {

using dbase::counted;

std::vector<std::string> splitAtCommas(const std::string& text) {
    std::vector<std::string> parts;
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find(',', begin), text.size());
        parts.push_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
    return parts;
}

/// Reads "via,codpostal=CP,veredicto=ESTADO".
ambrel::FillNames readFill(const std::string& text) {
    ambrel::FillNames names;
    for (const std::string& one : splitAtCommas(text)) {
        const std::size_t equals = std::min(one.find('='), one.size());
        const auto part = ambrel::fillPartOf(one.substr(0, equals));
        const bool hasColumn = equals + 1 < one.size();
        if (!part || (equals < one.size() && !hasColumn)) {
            throw loading::Failure("--escribir: no se entiende " + dbase::inQuotes(one) +
                                   "; por ejemplo: --escribir via,codpostal=CP (municipio, provincia, tipo, "
                                   "via, numero, resto, codpostal, cod_ine, veredicto)");
        }
        if (!names.emplace(*part, hasColumn ? one.substr(equals + 1) : std::string()).second) {
            throw loading::Failure("--escribir: " + std::string(ambrel::fillPartKey(*part)) +
                                   " se da más de una vez");
        }
    }
    return names;
}

/// A table of the folder by its name, or of another one by its path.
std::string findTable(const ValidateOptions& options) {
    const std::size_t slash = options.table.rfind('/');
    return slash == std::string::npos
               ? requireTable(options.folder, options.table)
               : requireTable(options.table.substr(0, slash), options.table.substr(slash + 1));
}

std::unique_ptr<loading::UndoWriter> createUndo(const ValidateOptions& options, const std::string& table) {
    return loading::createUndoFile(
        options.undoFile, dbase::folderOf(table) + '/' + dbase::baseName(table), table,
        "ambcp validar --tabla " + tableName(table) + " --escribir " + options.fill);
}

/// One validation of a table with all that it writes.
class TableRun {
public:
    explicit TableRun(const ValidateOptions& options)
        : options_(options), file_(findTable(options)), name_(tableName(file_)), result_(options.output),
          unsettled_(options.unsettled) {
        requireWhole(file_);
        ambrel::AddressFileOptions read;
        read.database = folderDatabase;
        read.columns = readColumns(options.columns);
        read.validation.threshold = options.threshold;
        read.threads = options.threads;
        read.writesHeading = !options.hidesHeading;
        validation_.emplace(file_, read);
        if (!options.report.empty()) {
            ambrel::ValidationReport::requireWritable(options.report);
            report_.emplace(ambrel::ValidationRun{.input = file_,
                                                  .tables = options.folder,
                                                  .threshold = options.threshold,
                                                  .provinceName = [](const std::string& code) {
                                                      return ambrel::provinceName(code, folderDatabase);
                                                  }});
        }
        if (!options.fill.empty()) {
            prepareFill();
        }
    }

    ExitCode run() {
        const auto start = std::chrono::steady_clock::now();
        try {
            totals_ = validate();
        } catch (...) {
            left_.flush();
            tellUndo();
            throw;
        }
        result_.close();
        unsettled_.close();
        left_.flush();
        tellTotals(name_, totals_.addresses, std::chrono::steady_clock::now() - start);
        if (undo_) {
            complain(name_ + ": " + counted(totals_.changed, "fila cambiada", "filas cambiadas") + "; " +
                     counted(totals_.leftAlone, "no se ha tocado", "no se han tocado"));
            tellUndo();
        }
        if (report_) {
            if (totals_.addresses.wasCancelled) {
                report_->setInterrupted();
            }
            report_->write(options_.report);
        }
        if (totals_.addresses.wasCancelled) {
            complain(name_ + ": interrumpido; faltan filas por validar");
        }
        return totals_.leftAlone == 0 ? ExitCode::done : ExitCode::negative;
    }

private:
    void prepareFill() {
        undo_ = createUndo(options_, file_);
        const std::vector<std::string> key =
            options_.key.empty() ? loading::keyColumnsOf(validation_->table()) : splitAtCommas(options_.key);
        validation_->fill(readFill(options_.fill), *undo_, key, [this](const ambrel::UnfilledRow& row) {
            left_.add(
                {std::to_string(row.record), row.problem.column, row.problem.value, row.problem.reason});
        });
    }

    void tellUndo() const {
        if (undo_ && !undo_->isEmpty()) {
            complain(name_ + ": lo que había está en " + undo_->path() + "; lo devuelve: ambcp deshacer " +
                     undo_->path());
        }
    }

    ambrel::TableTotals validate() {
        ProgressLine line(name_);
        const double records = validation_->recordCount();
        ambrel::AddressFileHandlers handlers{
            .row =
                [&](const ambrel::ValidatedRow& row) {
                    if (report_) {
                        report_->add(row);
                    }
                },
            .progress =
                [&](const ambrel::AddressFileProgress& progress) {
                    line.work(progress.rows, records > 0
                                                 ? std::min(1.0, static_cast<double>(progress.rows) / records)
                                                 : 1.0);
                    return !Interruption::isRequested();
                }};
        if (!undo_ || !options_.output.empty()) { // when it fills, standard output lists what was left alone
            result_.open();
            handlers.write = [&](std::string_view lines) { result_.write(lines); };
        }
        if (!options_.unsettled.empty()) {
            unsettled_.open();
            handlers.writeUnsettled = [&](std::string_view lines) { unsettled_.write(lines); };
        }
        return validation_->run(handlers);
    }

    const ValidateOptions& options_;
    std::string file_, name_;
    LineOutput result_, unsettled_;
    LateCsv left_{{"REGISTRO", "COLUMNA", "VALOR", "MOTIVO"}};
    std::unique_ptr<loading::UndoWriter> undo_; // outlives what changes the table
    std::optional<ambrel::TableValidation> validation_;
    std::optional<ambrel::ValidationReport> report_;
    ambrel::TableTotals totals_;
};

} // namespace

ExitCode validarTabla(const ValidateOptions& options) {
    usePostalTables(options.folder);
    ValidateOptions named = options;
    named.file = findTable(options); // so that nothing is written over the table
    requireOtherFiles(named);
    const Interruption interruption;
    ExitCode result = ExitCode::done;
    try {
        result = TableRun(named).run();
    } catch (const ambrel::AddressColumnsError& error) {
        throw loading::Failure(std::string(error.what()) + "; " + columnHint);
    }
    Interruption::obey();
    return result;
}

} // namespace ambcp
