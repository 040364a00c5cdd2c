// ambcp callejero cargar: an edition of the official street directory into the tables.

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <optional>
#include <set>

#include "controller/ProvinceName.h"
#include "dbase/dataset/dataset.h"
#include "dbase/system/databases.h"
#include "dbase/system/error.h"
#include "directory/DirectoryLoading.h"
#include "directory/DirectoryReport.h"
#include "loading/undo_file.h"
#include "report/WholeFile.h"
#include "tools/commands.h"
#include "tools/complain.h"
#include "tools/created_tables.h"
#include "tools/cut_table.h"
#include "tools/directory_output.h"
#include "tools/interruption.h"
#include "tools/output_files.h"
#include "tools/progress.h"
#include "tools/table_folder.h"

namespace ambcp {

namespace {

using namespace ambrel::directory;

RangeOpening openingNamed(const std::string& name) {
    return name == "no" ? RangeOpening::None : name == "huecos" ? RangeOpening::Gaps : RangeOpening::Ends;
}

/// Those that a load reads or changes.
constexpr std::array requiredTables{"MUNICIPI", "POSTAL", "TIPO_VIA"};

bool hasTables(const std::string& folder) {
    std::error_code problem;
    return std::filesystem::is_directory(folder, problem) &&
           std::ranges::all_of(requiredTables, [&](const char* name) {
               return dbase::findTableFile(folder, name).has_value();
           });
}

/// Before the files are read.
std::vector<std::string> earlyWarnings() {
    dbase::Dataset types(folderDatabase, "TIPO_VIA");
    types.open();
    if (!types.isEmpty()) {
        return {};
    }
    return {"TIPO_VIA está vacía, y las vías quedan sin tipo; si la borra, la carga la crea con los tipos "
            "del país"};
}

/// Before files are read for tables that could not be filled.
void requireMunicipalities(const DirectoryLoadOptions& options) {
    if (options.isTrial) {
        throw loading::Failure("en la carpeta «" + options.folder +
                               "» faltan tablas; sin --simular se crean, o créelas con «ambcp crear»");
    }
    if (options.units.empty() && options.municipalities.empty()) {
        throw loading::Failure(
            "para llenar MUNICIPI hacen falta los nombres de los municipios: dé --unidades o --municipios");
    }
}

std::vector<std::string> inputsOf(const DirectoryLoadOptions& options) {
    std::vector<std::string> inputs;
    for (const std::string& file :
         {options.stretches, options.streets, options.pseudoStreets, options.units, options.municipalities}) {
        if (!file.empty()) {
            inputs.push_back(file);
        }
    }
    return inputs;
}

void requireWritableOutputs(const DirectoryLoadOptions& options) {
    std::vector<NamedOutput> outputs;
    if (options.isTrial) {
        outputs.push_back({"la salida", {}});
    }
    for (const auto& [name, file] :
         {std::pair("--informe", options.report), {"--conflictos", options.conflicts}}) {
        if (!file.empty()) {
            outputs.push_back({name, file});
        }
    }
    requireOtherFiles(inputsOf(options), outputs);
    for (const NamedOutput& one : outputs) {
        if (!one.file.empty()) {
            report::requireWritable(one.file);
        }
    }
}

std::vector<unsigned> provincesOf(const DirectoryLoadOptions& options) {
    std::vector<unsigned> provinces;
    for (const std::string& code : options.provinces) {
        provinces.push_back(static_cast<unsigned>(std::stoul(code)));
    }
    return provinces;
}

/// The line on the terminal for one task after another. Where the user wants to end, it ends the load.
class TaskLine {
public:
    void operator()(const LoadingStep& step) {
        if (Interruption::isRequested()) {
            throw Interrupted();
        }
        if (!line_ || step.task != task_) {
            line_.emplace(task_ = step.task);
        }
        line_->work(step.done, step.share);
    }
    void end() { line_.reset(); }

private:
    std::optional<ProgressLine> line_;
    std::string task_;
};

/// One load, or its trial. Tables that are there are looked at before the files are read; missing ones are
/// created after that, so that files which cannot be used leave nothing.
class Load {
public:
    explicit Load(const DirectoryLoadOptions& options) : options_(options) {}

    void run() {
        requireWritableOutputs(options_);
        prepare();
        startReport();
        const RangeOpening opening = openingNamed(options_.opening);
        if (options_.isTrial) {
            summary_ = loading_->simulate(opening, observer());
        } else {
            if (!options_.keepsNoUndo) {
                undoFile_ = loading::freeUndoFile(options_.undoFile, folder_ + "/callejero");
            }
            summary_ = loading_->store(opening, undoFile_, observer());
        }
        if (created_) {
            created_->keep();
        }
        line_.end();
    }

    /// What was done is said before a file that cannot be written ends the order.
    void print() const {
        tellNotes(loading_->edition().notes(), summary_);
        if (!options_.isTrial) {
            printTotals(summary_);
            tellUndoFile();
        }
        if (report_) {
            report_->write(options_.report, summary_, loading_->edition().notes());
        }
        if (!options_.conflicts.empty()) {
            conflicts_.write(options_.conflicts);
        }
        if (options_.isTrial) {
            printMunicipalities(summary_);
        }
    }

private:
    [[nodiscard]] std::unique_ptr<Edition> read() {
        return std::make_unique<Edition>(
            EditionFiles{options_.stretches, options_.streets, options_.pseudoStreets, options_.units,
                         options_.municipalities, provincesOf(options_), options_.takesLosses},
            [this](const LoadingStep& step) { line_(step); });
    }

    void prepare() {
        std::unique_ptr<Edition> edition;
        if (!hasTables(options_.folder)) {
            requireMunicipalities(options_);
            edition = read();
            created_.emplace(options_.folder);
        }
        folder_ = useFolder(options_.folder);
        for (const char* const table : requiredTables) {
            requireWhole(requireTable(folder_, table));
        }
        warnings_ = earlyWarnings();
        for (const std::string& text : warnings_) {
            complain("aviso: " + text);
        }
        loading_ = std::make_unique<DirectoryLoading>(folderDatabase, folder_);
        if (!options_.isTrial) {
            loading_->begin();
        }
        loading_->take(edition ? std::move(edition) : read());
    }

    void startReport() {
        if (options_.report.empty()) {
            return;
        }
        DirectoryRun run{.tables = folder_,
                         .files = {},
                         .edition = loading_->edition().date(),
                         .provinces = provincesOf(options_),
                         .opening = openingNamed(options_.opening),
                         .isTrial = options_.isTrial,
                         .warnings = warnings_};
        std::set<std::string> names; // one ZIP may hold several of the files
        for (const std::string& file : inputsOf(options_)) {
            const std::string name = std::filesystem::path(file).filename().string();
            if (names.insert(name).second) {
                run.files.push_back(name);
            }
        }
        if (dbase::findTableFile(folder_, "PROVIN")) {
            run.provinceName = [](const std::string& code) {
                return ambrel::provinceName(code, folderDatabase);
            };
        }
        report_.emplace(std::move(run));
    }

    [[nodiscard]] LoadObserver observer() {
        LoadObserver observer;
        observer.progress = [this](const LoadingStep& step) { line_(step); };
        if (report_) {
            observer.change = [this](const DirectoryChange& change) { report_->add(change); };
        }
        if (report_ || !options_.conflicts.empty()) {
            observer.conflict = [this](const DirectoryConflict& conflict) {
                if (report_) {
                    report_->add(conflict);
                }
                if (!options_.conflicts.empty()) {
                    conflicts_.add(conflict);
                }
            };
        }
        return observer;
    }

    void tellUndoFile() const {
        std::error_code problem;
        if (!undoFile_.empty() &&
            std::filesystem::exists(undoFile_, problem)) { // there is none where nothing changed
            complain("lo que había está en " + undoFile_ + "; lo devuelve: ambcp deshacer " + undoFile_);
        }
    }

    const DirectoryLoadOptions& options_;
    TaskLine line_;
    std::string folder_, undoFile_;
    std::vector<std::string> warnings_; // from before the files were read
    std::optional<CreatedTables> created_;
    std::unique_ptr<DirectoryLoading> loading_;
    LoadSummary summary_;
    std::optional<DirectoryReport> report_;
    ConflictList conflicts_;
};

} // namespace

ExitCode callejeroCargar(const DirectoryLoadOptions& options) {
    const Interruption interruption;
    try {
        Load load(options);
        load.run();
        load.print();
        if (Interruption::isRequested()) {
            complain("la interrupción ha llegado cuando ya estaba hecho");
        }
    } catch (const Interrupted&) {
        complain("interrumpido; no se ha cambiado nada");
        Interruption::obey();
    } catch (const dbase::Error& error) {
        if (error.code() != dbase::ErrorCode::LockTimeout) {
            throw;
        }
        complain(std::string(error.what()) + ". No se ha cambiado nada.");
        return ExitCode::failed;
    }
    std::fflush(stdout);
    return ExitCode::done;
}

} // namespace ambcp
