// ambcp validar: which addresses of a file are right, and what was meant by the others.

#include <charconv>
#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "address/AddressFile.h"
#include "address/ValidationReport.h"
#include "controller/ProvinceName.h"
#include "dbase/system/counted.h"
#include "dbase/system/quoted.h"
#include "loading/ansi_text.h"
#include "loading/csv.h"
#include "tools/commands.h"
#include "tools/complain.h"
#include "tools/interruption.h"
#include "tools/line_output.h"
#include "tools/progress.h"
#include "tools/table_folder.h"
#include "tools/validation_run.h"

namespace ambcp {

namespace {

using ambrel::Verdict;
using dbase::counted;

std::optional<unsigned> number(std::string_view text) {
    unsigned value = 0;
    const auto [end, problem] = std::from_chars(text.data(), text.data() + text.size(), value);
    return problem == std::errc() && end == text.data() + text.size() && value > 0 ? std::optional(value)
                                                                                   : std::nullopt;
}

ambrel::AddressFilePart readPart(const std::string& text) {
    if (text.empty()) {
        return {};
    }
    const std::size_t slash = text.find('/');
    const auto one = number(std::string_view(text).substr(0, slash));
    const auto of =
        slash == std::string::npos ? std::nullopt : number(std::string_view(text).substr(slash + 1));
    if (!one || !of || *one > *of) {
        throw loading::Failure("--parte: " + dbase::inQuotes(text) + " no es una parte; por ejemplo, 1/4");
    }
    return {*one, *of};
}

ambrel::AddressFileOptions fileOptions(const ValidateOptions& options) {
    ambrel::AddressFileOptions file;
    file.database = folderDatabase;
    file.columns = readColumns(options.columns);
    file.separator = loading::separatorNamed(options.separator);
    file.encoding = loading::textEncodingNamed(options.encoding);
    file.validation.threshold = options.threshold;
    file.threads = options.threads;
    file.writesHeading = !options.hidesHeading;
    file.part = readPart(options.part);
    return file;
}

void tellRecognised(const std::string& name, const ambrel::AddressFilePreview& file) {
    const char separator = file.format.separator;
    std::string columns;
    for (std::size_t i = 0; i < file.places.size(); ++i) {
        if (file.places[i]) {
            columns += (columns.empty() ? "" : ", ") +
                       std::string(ambrel::addressColumnKey(static_cast<ambrel::AddressColumn>(i))) + '=' +
                       file.names[*file.places[i]];
        }
    }
    complain(name + ": " + std::string(loading::textEncodingName(file.format.encoding)) + ", separado por " +
             (separator == '\t' ? "tabuladores" : "«" + std::string(1, separator) + "»") + "; " + columns);
}

/// The first broken rows, for the end.
class BrokenRows {
public:
    void add(const ambrel::ValidatedRow& row) {
        if (row.judged.verdict == Verdict::BrokenRow && ++count_ <= mostTold) {
            told_.push_back("línea " + std::to_string(row.line) + ": " +
                            loading::utf8FromAnsi(row.judged.reason));
        }
    }
    void tell(const std::string& name) const {
        for (const std::string& one : told_) {
            complain(name + ": " + one);
        }
        if (count_ > mostTold) {
            complain(name + ": y " + counted(count_ - mostTold, "fila rota más", "filas rotas más"));
        }
    }

private:
    static constexpr std::uint64_t mostTold = 20;
    std::uint64_t count_ = 0;
    std::vector<std::string> told_;
};

/// One validation with all that it writes.
class FileValidation {
public:
    explicit FileValidation(const ValidateOptions& options)
        : options_(options), fileOptions_(fileOptions(options)), result_(options.output),
          unsettled_(options.unsettled) {
        if (!options.report.empty()) {
            ambrel::ValidationReport::requireWritable(options.report);
            report_.emplace(
                ambrel::ValidationRun{.input = options.file == "-" ? "entrada estándar" : options.file,
                                      .tables = options.folder,
                                      .threshold = options.threshold,
                                      .provinceName = [](const std::string& code) {
                                          return ambrel::provinceName(code, folderDatabase);
                                      }});
        }
    }

    void run() {
        ambrel::AddressFileInput input = ambrel::openAddressFile(options_.file);
        if (options_.file == "-") {
            input.bytes = interruptibleInput(input.name);
        }
        const auto start = std::chrono::steady_clock::now();
        const ambrel::AddressFileTotals totals = validate(input);
        result_.close();
        unsettled_.close();
        broken_.tell(input.name);
        tellTotals(input.name, totals, std::chrono::steady_clock::now() - start);
        if (report_) {
            if (totals.wasCancelled) {
                report_->setInterrupted();
            }
            report_->write(options_.report);
        }
        if (totals.wasCancelled) {
            complain(input.name + ": interrumpido; faltan filas por validar");
        }
    }

private:
    ambrel::AddressFileTotals validate(const ambrel::AddressFileInput& input) {
        ProgressLine line(input.name);
        ambrel::AddressFileHandlers handlers{.write = [&](std::string_view lines) { result_.write(lines); },
                                             .begin =
                                                 [&](const ambrel::AddressFilePreview& file) {
                                                     tellRecognised(input.name, file);
                                                     result_.open();
                                                     if (!options_.unsettled.empty()) {
                                                         unsettled_.open();
                                                     }
                                                 },
                                             .row =
                                                 [&](const ambrel::ValidatedRow& row) {
                                                     broken_.add(row);
                                                     if (report_) {
                                                         report_->add(row);
                                                     }
                                                 },
                                             .progress =
                                                 [&](const ambrel::AddressFileProgress& progress) {
                                                     line.work(progress.rows, progress.share);
                                                     return !Interruption::isRequested();
                                                 }};
        if (!options_.unsettled.empty()) {
            handlers.writeUnsettled = [&](std::string_view lines) { unsettled_.write(lines); };
        }
        return ambrel::validateAddressFile(input, fileOptions_, handlers);
    }

    const ValidateOptions& options_;
    ambrel::AddressFileOptions fileOptions_;
    LineOutput result_, unsettled_;
    std::optional<ambrel::ValidationReport> report_;
    BrokenRows broken_;
};

} // namespace

ExitCode validar(const ValidateOptions& options) {
    if (!options.table.empty()) {
        return validarTabla(options);
    }
    if (options.file.empty()) {
        throw loading::Failure("falta ENTRADA.csv, o --tabla con el nombre de una tabla");
    }
    usePostalTables(options.folder);
    requireOtherFiles(options);
    const Interruption interruption;
    try {
        FileValidation(options).run();
    } catch (const ambrel::AddressColumnsError& error) {
        throw loading::Failure(std::string(error.what()) + "; " + columnHint);
    } catch (const Interrupted&) {
        complain("interrumpido; faltan filas por validar");
    }
    Interruption::obey();
    return ExitCode::done;
}

} // namespace ambcp
