// ambcp validar: which addresses of a file are right, and what was meant by the others.

#include <array>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <optional>
#include <string>
#include <vector>

#include "address/AddressFile.h"
#include "address/ValidationReport.h"
#include "controller/ProvinceName.h"
#include "dbase/system/databases.h"
#include "dbase/system/quoted.h"
#include "loading/ansi_text.h"
#include "loading/counted.h"
#include "loading/csv.h"
#include "tools/commands.h"
#include "tools/complain.h"
#include "tools/cut_table.h"
#include "tools/interruption.h"
#include "tools/line_output.h"
#include "tools/progress.h"
#include "tools/table_folder.h"

namespace ambcp {

namespace {

using ambrel::Verdict;
using loading::counted;

constexpr const char* columnHint =
    "diga cuál es cada una con --columnas, por ejemplo: --columnas via=COLUMNA,municipio=COLUMNA "
    "(linea, tipo, via, numero, resto, codpostal, municipio, provincia)";

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

/// Nothing is written over what is read, nor twice to one file.
void requireOtherFiles(const ValidateOptions& options) {
    std::vector<std::pair<std::string, std::string>> outputs{{"la salida", options.output}};
    for (const auto& [name, file] :
         {std::pair("--solo-fallos", options.unsettled), {"--informe", options.report}}) {
        if (!file.empty()) {
            outputs.emplace_back(name, file);
        }
    }
    for (auto one = outputs.begin(); one != outputs.end(); ++one) {
        if (areSameFile(options.file, one->second)) {
            throw loading::Failure(one->first + " sería el mismo fichero que la entrada");
        }
        for (auto other = outputs.begin(); other != one; ++other) {
            if (!other->second.empty() && areSameFile(other->second, one->second)) {
                throw loading::Failure(one->first + " sería el mismo fichero que " + other->first);
            }
        }
    }
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

/// With one decimal and a comma.
std::string decimal(double value) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.1f", value);
    if (char* const point = std::strchr(text.data(), '.')) {
        *point = ',';
    }
    return text.data();
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
            line(ambrel::verdictName(static_cast<Verdict>(i)), totals.verdicts[i]);
        }
    }
    if (totals.rows > 0) {
        line("resueltas solas", totals.settled());
    }
}

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
    const std::string folder = useFolder(options.folder);
    for (const char* table : {"MUNICIPI", "POSTAL"}) {
        if (const auto file = dbase::findTableFile(folder, table)) { // the search reports a missing one
            requireWhole(*file);
        }
    }
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
